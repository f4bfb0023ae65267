#include "platform/VLRFreedesktopNotificationCenter.h"

#include "app/VLRText.h"
#include "platform/PlatformLog.h"
#include "platform/VLRMainQueue.h"
#include "platform/VLRUserNotificationCenterDelegate.h"
#include "service/VLRLogFormat.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDateTime>
#include <QPointer>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <climits>

namespace {

const QString serverService = QStringLiteral("org.freedesktop.Notifications");
const QString serverPath = QStringLiteral("/org/freedesktop/Notifications");
const QString serverInterface = QStringLiteral("org.freedesktop.Notifications");

const QString defaultActionKey = QStringLiteral("default");
const QString actionButtonKey = QStringLiteral("action");

QDBusMessage serverCall(const QString& method)
{
    return QDBusMessage::createMethodCall(serverService, serverPath, serverInterface, method);
}

// The server reads the body as markup: every text may come from outside (file
// names, other people's comments, error texts), so none of it may become markup.
QString escapedMarkup(const QString& text)
{
    QString escaped;
    escaped.reserve(text.size());
    for (const QChar c : text) {
        if (c == QLatin1Char('&'))
            escaped += QLatin1String("&amp;");
        else if (c == QLatin1Char('<'))
            escaped += QLatin1String("&lt;");
        else if (c == QLatin1Char('>'))
            escaped += QLatin1String("&gt;");
        else
            escaped += c;
    }
    return escaped;
}

// The title is one line: a line break or another control character from
// outside would let it pose as two.
QString oneLine(const QString& text)
{
    QString line = text;
    for (QChar& c : line)
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = QLatin1Char(' ');
    return line;
}

// The picture of the program: the icon file installed with it where there is
// one, as servers that look names up only in their own theme show no icon
// for a name; otherwise the name.
QString programImage()
{
    const QString installed = QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                                     QStringLiteral("icons/hicolor/scalable/apps/veluria.svg"));
    return installed.isEmpty() ? QStringLiteral("veluria") : QUrl::fromLocalFile(installed).toString();
}

} // namespace

VLRFreedesktopNotificationCenter::VLRFreedesktopNotificationCenter(const QDBusConnection& connection, QObject* parent)
    : QObject(parent)
    , m_connection(connection)
{
    const bool connected =
        m_connection.connect(serverService, serverPath, serverInterface, QStringLiteral("ActionInvoked"), this,
                             SLOT(actionInvoked(uint, QString)))
        && m_connection.connect(serverService, serverPath, serverInterface, QStringLiteral("NotificationClosed"), this,
                                SLOT(notificationClosed(uint, uint)));
    if (!connected)
        logFailure("listening to the notification server failed", QDBusMessage::createError(m_connection.lastError()));

    auto* watcher =
        new QDBusServiceWatcher(serverService, m_connection, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            &VLRFreedesktopNotificationCenter::serverOwnerChanged);
}

void VLRFreedesktopNotificationCenter::scheduleNotification(const VLRUserNotificationPtr& notification)
{
    if (!notification)
        return;
    if (QThread::currentThread() != thread()) {
        VLRMainQueue::dispatchAsync(this, [this, notification] { scheduleNotification(notification); });
        return;
    }
    const QDateTime date = notification->deliveryDate();
    const qint64 wait = date.isValid() ? QDateTime::currentDateTime().msecsTo(date) : 0;
    if (wait <= 0) {
        deliver(notification);
        return;
    }
    QTimer::singleShot(int(std::min<qint64>(wait, INT_MAX)), this, [this, notification] { deliver(notification); });
}

void VLRFreedesktopNotificationCenter::deliver(const VLRUserNotificationPtr& notification)
{
    if (VLRUserNotificationCenterDelegate* d = delegate();
        d && !d->userNotificationCenterShouldPresentNotification(this, notification))
        return;
    qCDebug(lcPlatform) << "Notification to deliver, state" << int(m_capabilitiesState);
    switch (m_capabilitiesState) {
    case CapabilitiesState::Known:
        send(notification);
        break;
    case CapabilitiesState::Unknown:
        m_waitingForCapabilities.push_back(notification);
        askCapabilities();
        break;
    case CapabilitiesState::Asking:
        m_waitingForCapabilities.push_back(notification);
        break;
    }
}

// Whether the body may carry markup decides how it is written, so nothing is
// sent before the answer.
void VLRFreedesktopNotificationCenter::askCapabilities()
{
    m_capabilitiesState = CapabilitiesState::Asking;
    callServer(serverCall(QStringLiteral("GetCapabilities")),
               [this](const QDBusMessage& reply) { capabilitiesArrived(reply); });
}

void VLRFreedesktopNotificationCenter::capabilitiesArrived(const QDBusMessage& reply)
{
    std::vector<VLRUserNotificationPtr> waiting;
    waiting.swap(m_waitingForCapabilities);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        // Most likely no server runs; the next notification asks again, as
        // one may have started by then.
        m_capabilitiesState = CapabilitiesState::Unknown;
        VLRLogFormat(5, QStringLiteral("SDKClient"),
                     "Notification server unavailable, %d notification(s) not shown: %@: %@", int(waiting.size()),
                     reply.errorName(), reply.errorMessage());
        return;
    }
    m_capabilities = reply.arguments().value(0).toStringList();
    m_capabilitiesState = CapabilitiesState::Known;
    for (const VLRUserNotificationPtr& notification : waiting)
        send(notification);
}

void VLRFreedesktopNotificationCenter::send(const VLRUserNotificationPtr& notification)
{
    // A server that shows the default action as a button labels it so.
    QStringList actions{defaultActionKey, vlr::localized("Open")};
    if (notification->hasActionButton())
        actions << actionButtonKey << notification->actionButtonTitle();
    const QString image = programImage();
    const QVariantMap hints{{QStringLiteral("desktop-entry"), QStringLiteral("veluria")},
                            {QStringLiteral("image-path"), image}};

    QDBusMessage message = serverCall(QStringLiteral("Notify"));
    message << QStringLiteral("Veluria") << uint(0) << image << titleText(notification->title())
            << bodyText(notification->informativeText()) << actions << hints << int(-1);

    callServer(message, [this, notification](const QDBusMessage& reply) {
        if (reply.type() == QDBusMessage::ReplyMessage)
            m_shown.insert(reply.arguments().value(0).toUInt(), notification);
        else
            logFailure("showing a notification failed", reply);
    });
}

QString VLRFreedesktopNotificationCenter::bodyText(const QString& text) const
{
    return speaksMarkup() ? escapedMarkup(text) : text;
}

// The protocol says the title is plain text, and dunst writes an escaped
// title as it stands ("&lt;b&gt;"), while some servers that read markup
// read it in the title too. So no tag can come about in either, the angle
// brackets of a title become their single-quote look-alikes there.
QString VLRFreedesktopNotificationCenter::titleText(const QString& text) const
{
    QString title = oneLine(text);
    if (speaksMarkup())
        title.replace(QLatin1Char('<'), QChar(0x2039)).replace(QLatin1Char('>'), QChar(0x203A));
    return title;
}

bool VLRFreedesktopNotificationCenter::speaksMarkup() const
{
    return m_capabilities.contains(QLatin1String("body-markup"));
}

void VLRFreedesktopNotificationCenter::actionInvoked(uint notificationId, const QString& actionKey)
{
    const auto found = m_shown.constFind(notificationId);
    if (found == m_shown.cend())
        return;
    VLRUserNotificationActivationType type;
    if (actionKey == defaultActionKey)
        type = VLRUserNotificationActivationTypeContentsClicked;
    else if (actionKey == actionButtonKey)
        type = VLRUserNotificationActivationTypeActionButtonClicked;
    else
        return;
    const VLRUserNotificationPtr notification = found.value();
    m_shown.erase(found);
    notification->setActivationType(type);

    QPointer<VLRFreedesktopNotificationCenter> self(this);
    if (VLRUserNotificationCenterDelegate* d = delegate())
        d->userNotificationCenterDidActivateNotification(this, notification);
    if (self)
        closeNotification(notificationId);
}

void VLRFreedesktopNotificationCenter::notificationClosed(uint notificationId, uint)
{
    m_shown.remove(notificationId);
}

// Another server, or none: its ids and what it can do no longer hold.
void VLRFreedesktopNotificationCenter::serverOwnerChanged(const QString&, const QString&, const QString&)
{
    m_shown.clear();
    if (m_capabilitiesState == CapabilitiesState::Known) {
        m_capabilitiesState = CapabilitiesState::Unknown;
        m_capabilities.clear();
    }
}

void VLRFreedesktopNotificationCenter::closeNotification(uint notificationId)
{
    QDBusMessage message = serverCall(QStringLiteral("CloseNotification"));
    message << notificationId;
    callServer(message, [this](const QDBusMessage& reply) {
        if (reply.type() != QDBusMessage::ReplyMessage)
            logFailure("closing a notification failed", reply);
    });
}

void VLRFreedesktopNotificationCenter::callServer(const QDBusMessage& message,
                                                  std::function<void(const QDBusMessage&)> onReply)
{
    // Without a connection Qt makes a call that never finishes; the answer
    // is an error all the same, and it too comes on a later turn.
    if (!m_connection.isConnected()) {
        const QDBusError error = m_connection.lastError().isValid()
            ? m_connection.lastError()
            : QDBusError(QDBusError::Disconnected, QStringLiteral("not connected to the session bus"));
        VLRMainQueue::dispatchAsync(
            this, [error, onReply = std::move(onReply)] { onReply(QDBusMessage::createError(error)); });
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(m_connection.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [onReply = std::move(onReply)](QDBusPendingCallWatcher* w) {
                w->deleteLater();
                onReply(w->reply());
            });
}

void VLRFreedesktopNotificationCenter::logFailure(const char* what, const QDBusMessage& error)
{
    VLRLogFormat(5, QStringLiteral("SDKClient"), "Notifications: %s: %@: %@", what, error.errorName(),
                 error.errorMessage());
}
