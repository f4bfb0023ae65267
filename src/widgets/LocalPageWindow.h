#pragma once

#include <QTextBrowser>

class VLRDesktopServices;

// A page that the service library wrote on this computer (its help, the
// forgotten-password page), shown in a window of the client: a local path is
// never handed to another program. The page is read as HTML, at most 1 MiB of
// a regular file; it loads nothing (no images, style sheets or other files)
// and runs nothing; a web or mail link in it goes to the browser.
class LocalPageWindow : public QTextBrowser
{
    Q_OBJECT

public:
    static constexpr qint64 MaxPageBytes = 1024 * 1024;

    explicit LocalPageWindow(VLRDesktopServices* desktop, QWidget* parent = nullptr);

    // Shows the page and brings the window forward; false, with a log line,
    // when the URL is no local page that can be read.
    bool showPage(const QUrl& url);

    // Where a URL of the library belongs: a local page in the window held by
    // `window` (made when there is none), anything else to the desktop, which
    // opens only web and mail addresses.
    static bool openURL(const QUrl& url, VLRDesktopServices* desktop, QPointer<LocalPageWindow>& window);

    QVariant loadResource(int type, const QUrl& name) override;

private:
    VLRDesktopServices* m_desktop;
};
