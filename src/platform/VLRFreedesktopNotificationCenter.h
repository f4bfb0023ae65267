#pragma once

#include "platform/VLRUserNotificationCenter.h"

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QStringList>

#include <functional>
#include <vector>

class QDBusMessage;

// The notification centre on the desktop's notification server
// (org.freedesktop.Notifications). A notification goes out at its delivery
// date, if the delegate lets it, with the program's icon. Its title is one
// line; where the server reads markup, the body is escaped and the title
// can't hold a tag. The
// action "default" is a click on it (activation 1), the action "action" its
// action button (activation 2). After
// an activation the centre closes the notification itself. Every call is
// asynchronous; without a server, each failed attempt leaves one log line and
// the centre goes on.
class VLRFreedesktopNotificationCenter : public QObject, public VLRUserNotificationCenter
{
    Q_OBJECT

public:
    explicit VLRFreedesktopNotificationCenter(const QDBusConnection& connection = QDBusConnection::sessionBus(),
                                              QObject* parent = nullptr);

    void scheduleNotification(const VLRUserNotificationPtr& notification) override;

private Q_SLOTS:
    void actionInvoked(uint notificationId, const QString& actionKey);
    void notificationClosed(uint notificationId, uint reason);
    void serverOwnerChanged(const QString& service, const QString& oldOwner, const QString& newOwner);

private:
    enum class CapabilitiesState { Unknown, Asking, Known };

    void deliver(const VLRUserNotificationPtr& notification);
    void askCapabilities();
    void capabilitiesArrived(const QDBusMessage& reply);
    void send(const VLRUserNotificationPtr& notification);
    void closeNotification(uint notificationId);
    bool speaksMarkup() const;
    QString bodyText(const QString& text) const;
    QString titleText(const QString& text) const;
    // Calls the server without waiting; onReply gets the answer or the error.
    void callServer(const QDBusMessage& message, std::function<void(const QDBusMessage&)> onReply);
    void logFailure(const char* what, const QDBusMessage& error);

    QDBusConnection m_connection;
    CapabilitiesState m_capabilitiesState = CapabilitiesState::Unknown;
    QStringList m_capabilities;
    std::vector<VLRUserNotificationPtr> m_waitingForCapabilities;
    // What the server shows now, by the ids it gave them.
    QHash<uint, VLRUserNotificationPtr> m_shown;
};
