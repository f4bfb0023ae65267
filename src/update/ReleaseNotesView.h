#pragma once

#include <QTextBrowser>

class VLRDesktopServices;

// Release notes as the service wrote them, in HTML, shown read-only. Nothing
// they name is fetched (no pictures, style sheets or files, from the network
// or the disk), nothing in them runs, and the view never leaves them: a click
// on a web link opens it in the user's browser, any other link does nothing.
class ReleaseNotesView : public QTextBrowser
{
    Q_OBJECT

public:
    explicit ReleaseNotesView(VLRDesktopServices* desktop, QWidget* parent = nullptr);

    QVariant loadResource(int type, const QUrl& name) override;

private:
    void openLink(const QUrl& url);

    VLRDesktopServices* m_desktop;
};
