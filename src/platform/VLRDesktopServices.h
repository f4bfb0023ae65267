#pragma once

#include <QString>
#include <QUrl>

// What the program asks of the desktop: a web page in the user's browser, a
// file in its default application.
class VLRDesktopServices
{
public:
    virtual ~VLRDesktopServices() = default;

    // True when the desktop took the URL.
    virtual bool openURL(const QUrl& url) = 0;

    // Opens an existing local file with its default application, or shows it
    // in its folder when opening it might run a program; true when the
    // desktop took it.
    virtual bool openFile(const QString& path) = 0;
};
