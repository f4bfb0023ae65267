#pragma once

#include <QProcess>
#include <QString>
#include <QVariantList>

#include <functional>

// A notification server for the tests: python-dbusmock's notification_daemon
// template on the session bus, with the given capabilities. It records every
// call made to it and can emit the server's signals.
class NotificationDaemonMock
{
public:
    explicit NotificationDaemonMock(QString capabilities);
    ~NotificationDaemonMock();

    // Starts the server and waits until it owns its name on the bus; on
    // failure the reason is in error.
    bool start(QString* error);
    void stop();

    // The arguments of every call of the method, in order.
    QList<QVariantList> calls(const QString& method) const;

    void emitActionInvoked(uint notificationId, const QString& actionKey) const;

    static bool serverIsOnBus();

private:
    QString m_capabilities;
    QProcess m_process;
};

// Runs the event loop until the condition holds or the time is up.
bool waitUntil(const std::function<bool()>& condition, int timeoutMilliseconds = 10000);
