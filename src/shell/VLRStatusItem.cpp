#include "shell/VLRStatusItem.h"

#include "app/VLRText.h"
#include "platform/VLRDesktopAppearance.h"
#include "shell/ShellLog.h"
#include "shell/SystemTrayWatcher.h"
#include "widgets/StatusItemImageView.h"

#include <QCursor>
#include <QDBusConnection>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <QSystemTrayIcon>
#include <QTimer>

namespace {

constexpr int StatusItemSize = 24;
constexpr int PlaceWatchMilliseconds = 1000;

} // namespace

VLRStatusItem::VLRStatusItem(QObject* parent)
    : QObject(parent)
    , m_menu(new QMenu())
    , m_appearance(new VLRDesktopAppearance(QDBusConnection::sessionBus(), this))
{
    m_menu->addAction(vlr::localized("Open Veluria"), this, &VLRStatusItem::pressView);
    m_menu->addSeparator();
    m_menu->addAction(vlr::localized("Quit Veluria"), this, &VLRStatusItem::quitRequested);

    m_trays = new SystemTrayWatcher(this);
    connect(m_trays, &SystemTrayWatcher::trayArrived, this, &VLRStatusItem::createTrayIconIfPossible);
    // Trays that embed the icon know its place; it is looked at once a second,
    // so that the popover can follow when the panel rearranges its icons.
    m_placeWatch = new QTimer(this);
    m_placeWatch->setInterval(PlaceWatchMilliseconds);
    connect(m_placeWatch, &QTimer::timeout, this, &VLRStatusItem::followTrayIcon);
    connect(m_appearance, &VLRDesktopAppearance::darkModeChanged, this, [this](bool dark) {
        if (m_view)
            m_view->setDarkMode(dark);
    });
}

VLRStatusItem::~VLRStatusItem()
{
    delete m_trayIcon;
    delete m_menu;
}

void VLRStatusItem::setView(StatusItemImageView* view)
{
    m_view = view;
    if (!view)
        return;
    view->setDarkMode(m_appearance->isDark());
    // Until the tray says where the icon is, the top right of the screen is
    // the best guess: that is where trays live on most desktops.
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect available = screen->availableGeometry();
        view->setGeometry(available.right() + 1 - StatusItemSize, available.top(), StatusItemSize, StatusItemSize);
        emit moved(QRectF(view->geometry()));
    }
    connect(view, &VLRImageView::imageChanged, this, [this](const QPixmap& image) {
        if (m_trayIcon)
            m_trayIcon->setIcon(QIcon(image));
    });
    // Qt settles the kind of tray icon the first time one is made or a tray
    // is asked for, so nothing is asked of it before a tray is there.
    if (m_trays->statusNotifierHostIsThere())
        createTrayIconIfPossible(QStringLiteral("StatusNotifierItem"));
    else if (m_trays->xembedTrayIsThere())
        createTrayIconIfPossible(QStringLiteral("XEmbed"));
    else
        qCInfo(lcShell, "No system tray yet: the icon comes when one starts");
}

void VLRStatusItem::createTrayIconIfPossible(const QString& kind)
{
    if (m_trayIcon || !m_view)
        return;
    qCInfo(lcShell, "System tray found (%s): the icon goes there", qUtf8Printable(kind));
    m_trayIcon = new QSystemTrayIcon(this);
    m_trayIcon->setToolTip(QStringLiteral("Veluria"));
    // Before the view's first tick there is no picture yet: start greyed out.
    m_trayIcon->setIcon(QIcon(m_view->image().isNull() ? m_view->greyedOutImage() : m_view->image()));
    m_trayIcon->setContextMenu(m_menu);
    connect(m_trayIcon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::MiddleClick)
            pressView();
    });
    m_trayIcon->show();
    m_placeWatch->start();
}

void VLRStatusItem::followTrayIcon()
{
    const QRect place = m_trayIcon ? m_trayIcon->geometry() : QRect();
    if (!m_view || place.isEmpty() || place == m_view->geometry())
        return;
    m_view->setGeometry(place);
    emit moved(QRectF(place));
}

void VLRStatusItem::pressView()
{
    if (!m_view)
        return;
    // The popover hangs from the view's rectangle: the icon's own where the
    // tray tells it, otherwise the place of the click.
    const QRect place = m_trayIcon ? m_trayIcon->geometry() : QRect();
    if (place.isEmpty())
        m_view->setGeometry(QRect(QCursor::pos() - QPoint(StatusItemSize / 2, StatusItemSize / 2),
                                  QSize(StatusItemSize, StatusItemSize)));
    else
        followTrayIcon();
    m_view->simulateClick();
}
