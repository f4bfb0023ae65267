#pragma once

#include <QString>
#include <QUrl>

#include <memory>

// What the program asks of the desktop: a web page in the user's browser, a
// file in its default application.
class VLRDesktopServices
{
public:
    virtual ~VLRDesktopServices() = default;

    // The process-wide instance: the one installed, or else the desktop's own.
    static VLRDesktopServices* sharedDesktopServices();

    // Installs the process-wide instance (tests install a recorder); nullptr
    // goes back to the desktop's own.
    static void setSharedDesktopServices(std::shared_ptr<VLRDesktopServices> services);

    // True when the desktop took the URL.
    virtual bool openURL(const QUrl& url) = 0;

    // Opens an existing local file with its default application; true when the
    // desktop took it.
    virtual bool openFile(const QString& path) = 0;
};
