#include "widgets/LocalPageWindow.h"

#include "app/VLRColors.h"
#include "platform/VLRDesktopServices.h"
#include "service/VLRLogFormat.h"
#include "widgets/VLRFonts.h"

#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QTextDocument>

namespace {

constexpr int Width = 520;
constexpr int Height = 420;

} // namespace

LocalPageWindow::LocalPageWindow(VLRDesktopServices* desktop, QWidget* parent)
    : QTextBrowser(parent)
    , m_desktop(desktop)
{
    setWindowFlag(Qt::Window);
    setAttribute(Qt::WA_DeleteOnClose);
    setOpenLinks(false);
    setFont(VLRFonts::muli(12));
    QPalette colours = palette();
    colours.setColor(QPalette::Base, Qt::white);
    colours.setColor(QPalette::Text, VLRColors::textColor());
    setPalette(colours);
    document()->setDefaultStyleSheet(QStringLiteral("a { color: %1; }").arg(VLRColors::mainAppColor().name()));
    document()->setDocumentMargin(16);
    resize(Width, Height);
    connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) {
        const QString scheme = link.scheme().toLower();
        if (m_desktop
            && (scheme == QLatin1String("https") || scheme == QLatin1String("http")
                || scheme == QLatin1String("mailto")))
            m_desktop->openURL(link);
    });
}

bool LocalPageWindow::showPage(const QUrl& url)
{
    const QFileInfo info(url.toLocalFile());
    QFile file(info.filePath());
    if (!url.isLocalFile() || !info.isFile() || info.size() > MaxPageBytes || !file.open(QIODevice::ReadOnly)) {
        VLRLogFormat(5, QStringLiteral("SDKClient"), "Not showing \"%@\": no page of this computer", url);
        return false;
    }
    setHtml(QString::fromUtf8(file.read(MaxPageBytes)));
    const QString title = documentTitle();
    setWindowTitle(title.isEmpty() ? QStringLiteral("Veluria") : title);
    show();
    raise();
    activateWindow();
    return true;
}

bool LocalPageWindow::openURL(const QUrl& url, VLRDesktopServices* desktop, QPointer<LocalPageWindow>& window)
{
    if (!url.isLocalFile())
        return desktop && desktop->openURL(url);
    if (!window)
        window = new LocalPageWindow(desktop);
    return window->showPage(url);
}

QVariant LocalPageWindow::loadResource(int, const QUrl&)
{
    return QVariant();
}
