#include "update/ReleaseNotesView.h"

#include "platform/VLRDesktopServices.h"

ReleaseNotesView::ReleaseNotesView(VLRDesktopServices* desktop, QWidget* parent)
    : QTextBrowser(parent)
    , m_desktop(desktop)
{
    setOpenLinks(false);
    setOpenExternalLinks(false);
    setReadOnly(true);
    connect(this, &QTextBrowser::anchorClicked, this, &ReleaseNotesView::openLink);
}

QVariant ReleaseNotesView::loadResource(int, const QUrl&)
{
    return QVariant();
}

void ReleaseNotesView::openLink(const QUrl& url)
{
    // A link in the notes is data: only a web page goes to the browser, so
    // that a "file:" or a custom scheme can't start anything on this computer.
    const QString scheme = url.scheme().toLower();
    if (m_desktop && (scheme == QLatin1String("https") || scheme == QLatin1String("http")) && url.isValid())
        m_desktop->openURL(url);
}
