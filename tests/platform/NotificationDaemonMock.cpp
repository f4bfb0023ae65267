#include "platform/NotificationDaemonMock.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QThread>

namespace {

const QString serverName = QStringLiteral("org.freedesktop.Notifications");
const QString serverPath = QStringLiteral("/org/freedesktop/Notifications");
const QString mockInterface = QStringLiteral("org.freedesktop.DBus.Mock");

// dbusmock comes as a Debian package for the system's Python, which may not
// be the first python3 on the PATH.
QString python()
{
    const QString system = QStringLiteral("/usr/bin/python3");
    return QFileInfo(system).isExecutable() ? system : QStringLiteral("python3");
}

// Containers inside a variant arrive still marshalled.
QVariant unmarshalled(const QVariant& value)
{
    if (value.userType() != qMetaTypeId<QDBusArgument>())
        return value;
    const QDBusArgument argument = value.value<QDBusArgument>();
    if (argument.currentSignature() == QLatin1String("as"))
        return qdbus_cast<QStringList>(argument);
    if (argument.currentSignature() == QLatin1String("a{sv}"))
        return qdbus_cast<QVariantMap>(argument);
    return value;
}

} // namespace

NotificationDaemonMock::NotificationDaemonMock(QString capabilities)
    : m_capabilities(std::move(capabilities))
{
}

NotificationDaemonMock::~NotificationDaemonMock()
{
    stop();
}

bool NotificationDaemonMock::start(QString* error)
{
    const QString parameters = QStringLiteral("{\"capabilities\": \"%1\"}").arg(m_capabilities);
    m_process.start(python(), {QStringLiteral("-m"), QStringLiteral("dbusmock"), QStringLiteral("--session"),
                               QStringLiteral("-t"), QStringLiteral("notification_daemon"), QStringLiteral("-p"), parameters});
    if (!m_process.waitForStarted()) {
        *error = QStringLiteral("cannot start %1: %2").arg(python(), m_process.errorString());
        return false;
    }
    const bool up = waitUntil([this] { return serverIsOnBus() || m_process.state() == QProcess::NotRunning; });
    if (up && serverIsOnBus())
        return true;
    *error = QStringLiteral("python3 -m dbusmock did not come up: %1")
                 .arg(QString::fromLocal8Bit(m_process.readAllStandardError()));
    stop();
    return false;
}

void NotificationDaemonMock::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(5000))
        m_process.kill();
    m_process.waitForFinished(5000);
    waitUntil([] { return !serverIsOnBus(); });
}

QList<QVariantList> NotificationDaemonMock::calls(const QString& method) const
{
    const QDBusMessage reply = QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall(serverName, serverPath, mockInterface, QStringLiteral("GetCalls")));
    QList<QVariantList> found;
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return found;
    const QDBusArgument list = reply.arguments().constFirst().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        quint64 time = 0;
        QString name;
        QVariantList arguments;
        list.beginStructure();
        list >> time >> name >> arguments;
        list.endStructure();
        if (name != method)
            continue;
        for (QVariant& argument : arguments)
            argument = unmarshalled(argument);
        found.append(arguments);
    }
    list.endArray();
    return found;
}

void NotificationDaemonMock::emitActionInvoked(uint notificationId, const QString& actionKey) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(serverName, serverPath, mockInterface, QStringLiteral("EmitSignal"));
    message << serverName << QStringLiteral("ActionInvoked") << QStringLiteral("us")
            << QVariantList{QVariant(notificationId), QVariant(actionKey)};
    QDBusConnection::sessionBus().call(message);
}

bool NotificationDaemonMock::serverIsOnBus()
{
    QDBusConnectionInterface* bus = QDBusConnection::sessionBus().interface();
    return bus && bus->isServiceRegistered(serverName).value();
}

bool waitUntil(const std::function<bool()>& condition, int timeoutMilliseconds)
{
    const QDeadlineTimer deadline(timeoutMilliseconds);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(10);
    }
    return true;
}
