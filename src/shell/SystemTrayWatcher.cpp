#include "shell/SystemTrayWatcher.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>

namespace {

const QString StatusNotifierWatcherPath = QStringLiteral("/StatusNotifierWatcher");
// The watcher answers at once; a hung one costs no more than this.
constexpr int PropertyTimeoutMilliseconds = 500;

xcb_atom_t internAtom(xcb_connection_t* connection, const QByteArray& name)
{
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, false, uint16_t(name.size()), name.constData()), nullptr);
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    std::free(reply);
    return atom;
}

} // namespace

SystemTrayWatcher::SystemTrayWatcher(QObject* parent)
    : QObject(parent)
{
    // A watcher's name may come before any host has registered with it (the
    // panel starts after the watcher's service): the host is what counts, as
    // for Qt, which looks once and for good.
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
        m_statusNotifierWatcher =
            new QDBusServiceWatcher(StatusNotifierWatcher, bus, QDBusServiceWatcher::WatchForRegistration, this);
        connect(m_statusNotifierWatcher, &QDBusServiceWatcher::serviceRegistered, this,
                &SystemTrayWatcher::statusNotifierHostRegistered);
        bus.connect(StatusNotifierWatcher, StatusNotifierWatcherPath, StatusNotifierWatcher,
                    QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(statusNotifierHostRegistered()));
    }
    watchXembedTrays();
}

SystemTrayWatcher::~SystemTrayWatcher()
{
    if (m_connection)
        QCoreApplication::instance()->removeNativeEventFilter(this);
}

void SystemTrayWatcher::watchXembedTrays()
{
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    xcb_connection_t* connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return;
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    if (!screen)
        return;
    m_connection = connection;
    m_root = screen->root;
    m_managerAtom = internAtom(connection, "MANAGER");
    m_selectionAtom = internAtom(connection, "_NET_SYSTEM_TRAY_S0");

    // The MANAGER message goes to the root window's structure listeners; the
    // masks Qt chose for the root window stay.
    xcb_get_window_attributes_reply_t* attributes =
        xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, m_root), nullptr);
    const uint32_t mask = (attributes ? attributes->your_event_mask : 0) | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    std::free(attributes);
    xcb_change_window_attributes(connection, m_root, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(connection);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

bool SystemTrayWatcher::statusNotifierHostIsThere() const
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface() || !bus.interface()->isServiceRegistered(StatusNotifierWatcher).value())
        return false;
    return saysHostIsRegistered(bus.call(isHostRegisteredQuestion(), QDBus::Block, PropertyTimeoutMilliseconds));
}

void SystemTrayWatcher::statusNotifierHostRegistered()
{
    // A host that comes while the client runs is asked about without
    // waiting for the answer on the GUI thread.
    QDBusConnection bus = QDBusConnection::sessionBus();
    auto* answer =
        new QDBusPendingCallWatcher(bus.asyncCall(isHostRegisteredQuestion(), PropertyTimeoutMilliseconds), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
        call->deleteLater();
        if (saysHostIsRegistered(call->reply()))
            emit trayArrived(QStringLiteral("StatusNotifierItem"));
    });
}

QDBusMessage SystemTrayWatcher::isHostRegisteredQuestion()
{
    QDBusMessage get =
        QDBusMessage::createMethodCall(StatusNotifierWatcher, StatusNotifierWatcherPath,
                                       QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << StatusNotifierWatcher << QStringLiteral("IsStatusNotifierHostRegistered");
    return get;
}

bool SystemTrayWatcher::saysHostIsRegistered(const QDBusMessage& reply)
{
    return reply.type() == QDBusMessage::ReplyMessage
        && reply.arguments().value(0).value<QDBusVariant>().variant().toBool();
}

bool SystemTrayWatcher::xembedTrayIsThere() const
{
    if (!m_connection || m_selectionAtom == XCB_ATOM_NONE)
        return false;
    xcb_get_selection_owner_reply_t* reply =
        xcb_get_selection_owner_reply(m_connection, xcb_get_selection_owner(m_connection, m_selectionAtom), nullptr);
    const bool owned = reply && reply->owner != XCB_NONE;
    std::free(reply);
    return owned;
}

bool SystemTrayWatcher::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t" || !message)
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE)
        return false;
    const auto* clientMessage = static_cast<const xcb_client_message_event_t*>(message);
    if (clientMessage->type == m_managerAtom && clientMessage->format == 32
        && clientMessage->data.data32[1] == m_selectionAtom)
        // Not from inside the event filter: whoever listens may make windows.
        QMetaObject::invokeMethod(
            this, [this] { emit trayArrived(QStringLiteral("XEmbed")); }, Qt::QueuedConnection);
    return false;
}
