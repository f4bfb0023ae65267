#include "platform/VLRFreedesktopNotificationCenter.h"
#include "platform/VLRUserNotificationCenterDelegate.h"
#include "support/CapturedLog.h"
#include "support/ScopedEnvironment.h"
#include "support/TestFiles.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDateTime>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <gmock/gmock.h>

namespace {

const QString serverName = QStringLiteral("org.freedesktop.Notifications");

bool serverIsOnBus()
{
    QDBusConnectionInterface* bus = QDBusConnection::sessionBus().interface();
    return bus && bus->isServiceRegistered(serverName).value();
}

bool waitFor(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, 10000);
}

// Containers inside a variant arrive still marshalled.
QVariant unmarshalled(const QVariant& value)
{
    if (value.userType() != qMetaTypeId<QDBusArgument>())
        return value;
    const QDBusArgument argument = value.value<QDBusArgument>();
    if (argument.currentSignature() == QLatin1String("as"))
        return qdbus_cast<QStringList>(argument);
    return qdbus_cast<QVariantMap>(argument);
}

// A notification server for the tests: python-dbusmock's notification_daemon
// template on the session bus, with the given capabilities. It records every
// call made to it and emits the server's signals on demand.
class NotificationDaemonMock
{
public:
    explicit NotificationDaemonMock(const QString& capabilities)
    {
        // dbusmock comes as a Debian package for the system's Python, which
        // may not be the first python3 on the PATH.
        const QString system = QStringLiteral("/usr/bin/python3");
        m_process.start(QFileInfo(system).isExecutable() ? system : QStringLiteral("python3"),
                        {"-m", "dbusmock", "--session", "-t", "notification_daemon", "-p",
                         QStringLiteral("{\"capabilities\": \"%1\"}").arg(capabilities)});
        waitFor([this] { return serverIsOnBus() || m_process.state() == QProcess::NotRunning; });
    }

    // Empty once the server owns its name on the bus.
    QString failure()
    {
        if (serverIsOnBus())
            return QString();
        return "python3 -m dbusmock did not come up: " + QString::fromLocal8Bit(m_process.readAllStandardError());
    }

    // Gone from the bus when it returns.
    ~NotificationDaemonMock()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.terminate();
        if (!m_process.waitForFinished(5000))
            m_process.kill();
        m_process.waitForFinished(5000);
        waitFor([] { return !serverIsOnBus(); });
    }

    // The arguments of every call of the method, in order.
    QList<QVariantList> calls(const QString& method) const
    {
        const QDBusMessage reply = QDBusConnection::sessionBus().call(mockCall("GetCalls"));
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
            for (QVariant& argument : arguments)
                argument = unmarshalled(argument);
            if (name == method)
                found.append(arguments);
        }
        list.endArray();
        return found;
    }

    void invokeAction(uint notificationId, const QString& actionKey) const
    {
        QDBusMessage message = mockCall("EmitSignal");
        message << serverName << QStringLiteral("ActionInvoked") << QStringLiteral("us")
                << QVariantList{notificationId, actionKey};
        QDBusConnection::sessionBus().call(message);
    }

private:
    static QDBusMessage mockCall(const char* method)
    {
        return QDBusMessage::createMethodCall(serverName, "/org/freedesktop/Notifications", "org.freedesktop.DBus.Mock",
                                              method);
    }

    QProcess m_process;
};

struct MockNotificationCenterDelegate : VLRUserNotificationCenterDelegate
{
    MOCK_METHOD(bool, userNotificationCenterShouldPresentNotification,
                (VLRUserNotificationCenter*, const VLRUserNotificationPtr&), (override));
    MOCK_METHOD(void, userNotificationCenterDidActivateNotification,
                (VLRUserNotificationCenter*, const VLRUserNotificationPtr&), (override));
};

VLRUserNotificationPtr notification(const QString& title, const QString& text, const QString& actionButtonTitle = {},
                                    const QVariantMap& userInfo = {})
{
    auto notification = std::make_shared<VLRUserNotification>();
    notification->setTitle(title);
    notification->setInformativeText(text);
    notification->setDeliveryDate(QDateTime::currentDateTime());
    notification->setHasActionButton(!actionButtonTitle.isNull());
    notification->setActionButtonTitle(actionButtonTitle);
    notification->setUserInfo(userInfo);
    return notification;
}

class FreedesktopNotificationCenterTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // The tests run notification servers of their own on the session bus.
        if (!QDBusConnection::sessionBus().isConnected() || serverIsOnBus())
            GTEST_SKIP() << "needs a private D-Bus session bus without a notification server: run under "
                            "dbus-run-session --config-file=tests/support/session-bus.conf";
    }

    void startServer(const QString& capabilities)
    {
        server = std::make_unique<NotificationDaemonMock>(capabilities);
        ASSERT_EQ(server->failure(), "");
    }

    std::unique_ptr<NotificationDaemonMock> server;
    CapturedLog logLines;
};

TEST_F(FreedesktopNotificationCenterTest, SendsWhatTheServerExpectsWithTitleAndBodyEscaped)
{
    ASSERT_NO_FATAL_FAILURE(startServer("actions body body-markup"));
    QTemporaryDir data;
    ScopedEnvironment environment;
    environment.set("XDG_DATA_HOME", data.filePath("nothing"));
    environment.set("XDG_DATA_DIRS", data.filePath("nothing"));
    VLRFreedesktopNotificationCenter center;
    // What the server can do is asked once.
    center.scheduleNotification(notification("New message in <b>WS</b><img src=\"file:///etc/passwd\">\nSecond line",
                                             "Disk <full> & \"more\""));
    ASSERT_TRUE(waitFor([&] { return server->calls("Notify").size() == 1; }));

    // Once installed, the program's icon goes as its file.
    writeFile(data.filePath("icons/hicolor/scalable/apps/veluria.svg"), "<svg/>");
    environment.set("XDG_DATA_HOME", data.path());
    center.scheduleNotification(notification("Update\u2028Available", "Muli & Co has an update", "Update"));
    ASSERT_TRUE(waitFor([&] { return server->calls("Notify").size() == 2; }));

    // A server that reads markup in the body may read it in the title too.
    const QList<QVariantList> notify = server->calls("Notify");
    const QString icon = QUrl::fromLocalFile(data.filePath("icons/hicolor/scalable/apps/veluria.svg")).toString();
    EXPECT_EQ(notify[0],
              (QVariantList{
                  "Veluria", 0u, "veluria",
                  "New message in \u2039b\u203aWS\u2039/b\u203a\u2039img src=\"file:///etc/passwd\"\u203a Second line",
                  "Disk &lt;full&gt; &amp; \"more\"", QStringList{"default", "Open"},
                  QVariantMap{{"desktop-entry", "veluria"}, {"image-path", "veluria"}}, -1}));
    EXPECT_EQ(notify[1],
              (QVariantList{"Veluria", 0u, icon, "Update Available", "Muli &amp; Co has an update",
                            QStringList{"default", "Open", "action", "Update"},
                            QVariantMap{{"desktop-entry", "veluria"}, {"image-path", icon}}, -1}));
    EXPECT_EQ(server->calls("GetCapabilities").size(), 1);
    EXPECT_EQ(logLines, QStringList());
}

TEST_F(FreedesktopNotificationCenterTest, ActivationsReachTheDelegateAndCloseTheNotification)
{
    ASSERT_NO_FATAL_FAILURE(startServer("actions body body-markup"));
    VLRFreedesktopNotificationCenter center;
    testing::StrictMock<MockNotificationCenterDelegate> delegate;
    center.setDelegate(&delegate);
    const QVariantMap failedInfo{{"VLRUserNotificationTypeKey", "VLRUserNotificationTypeTransferFailed"},
                                 {"VLRUserNotificationObjectIdentifierKey", "t-17"}};
    const auto failed = notification("Error uploading project: \"Plan\"", "Gone", {}, failedInfo);
    const auto hidden = notification("Hidden", "not for the user");
    const auto update = notification("Update Available", "Muli has an update", "Update");
    const auto last = notification("Thank You!", "Your new purchase is available for download");
    EXPECT_CALL(delegate, userNotificationCenterShouldPresentNotification(&center, testing::_))
        .WillRepeatedly(testing::Return(true));
    EXPECT_CALL(delegate, userNotificationCenterShouldPresentNotification(&center, hidden))
        .WillOnce(testing::Return(false));
    for (const auto& each : {failed, hidden, update, last})
        center.scheduleNotification(each);
    // The server numbers what it shows from 1 on: failed 1, update 2, last 3.
    ASSERT_TRUE(waitFor([&] { return server->calls("Notify").size() == 3; }));
    EXPECT_EQ(server->calls("Notify")[1][3], "Update Available");

    // A click on the body is activation 1, on the action button 2; either
    // way the centre closes the notification itself. The signals for an
    // action never offered, for another program's notification and for one
    // already activated are ignored.
    testing::InSequence order;
    for (const auto& each : {failed, update, last})
        EXPECT_CALL(delegate, userNotificationCenterDidActivateNotification(&center, each));
    // The server may click before the centre has read the ids it gave out:
    // the click is repeated until it takes, which it does once only.
    ASSERT_TRUE(waitFor([&] {
        server->invokeAction(1, "default");
        return server->calls("CloseNotification").size() == 1;
    }));
    for (const auto& [id, key] :
         {std::pair(2u, "snooze"), {2u, "action"}, {999u, "default"}, {1u, "default"}, {3u, "default"}})
        server->invokeAction(id, key);
    ASSERT_TRUE(waitFor([&] { return server->calls("CloseNotification").size() >= 3; }));
    EXPECT_EQ(server->calls("CloseNotification"), (QList<QVariantList>{{1u}, {2u}, {3u}}));
    EXPECT_EQ(failed->activationType(), VLRUserNotificationActivationTypeContentsClicked);
    EXPECT_EQ(failed->userInfo(), failedInfo);
    EXPECT_EQ(update->activationType(), VLRUserNotificationActivationTypeActionButtonClicked);
    center.setDelegate(nullptr);
}

TEST_F(FreedesktopNotificationCenterTest, ANotificationGoesOutNotBeforeItsDeliveryDate)
{
    ASSERT_NO_FATAL_FAILURE(startServer("actions body"));
    VLRFreedesktopNotificationCenter center;
    const auto later = notification("Later", "one second on");
    later->setDeliveryDate(QDateTime::currentDateTime().addMSecs(1000));
    const auto overdue = notification("Overdue", "a minute ago");
    overdue->setDeliveryDate(QDateTime::currentDateTime().addSecs(-60));
    center.scheduleNotification(later);
    center.scheduleNotification(overdue);
    const auto titles = [this] {
        QStringList sent;
        for (const QVariantList& call : server->calls("Notify"))
            sent << call[3].toString();
        return sent;
    };
    // Seen no sooner than its date (less a timer's slack), sent no sooner.
    ASSERT_TRUE(waitFor([&] { return titles().size() == 2; }));
    EXPECT_GE(QDateTime::currentDateTime().addMSecs(50), later->deliveryDate());
    EXPECT_EQ(titles(), QStringList({"Overdue", "Later"}));
}

TEST_F(FreedesktopNotificationCenterTest, WithoutAServerTheCentreLogsAndAsksAnyLaterServerAfresh)
{
    VLRFreedesktopNotificationCenter center;
    center.scheduleNotification(notification("Lost", "nobody listens"));
    ASSERT_TRUE(waitFor([&] { return !logLines.isEmpty(); }));
    EXPECT_TRUE(logLines.value(0).startsWith("5 SDKClient Notification server unavailable, 1 notification(s) not "
                                             "shown: org.freedesktop.DBus.Error.ServiceUnknown: "))
        << logLines.value(0).toStdString();

    // A server that comes up later is used from then on; the next one may
    // read the body otherwise, and is asked afresh.
    ASSERT_NO_FATAL_FAILURE(startServer("actions body body-markup"));
    center.scheduleNotification(notification("Found", "a & b"));
    ASSERT_TRUE(waitFor([&] { return server->calls("Notify").size() == 1; }));
    EXPECT_EQ(server->calls("Notify")[0][4], "a &amp; b");
    server = nullptr;
    ASSERT_NO_FATAL_FAILURE(startServer("actions body"));
    center.scheduleNotification(notification("Plain <Team>", "Ann: <i>see</i> & reply"));
    ASSERT_TRUE(waitFor([&] { return server->calls("Notify").size() == 1; }));
    EXPECT_EQ(server->calls("Notify")[0][4], "Ann: <i>see</i> & reply");
    EXPECT_EQ(logLines.size(), 1);
}

TEST_F(FreedesktopNotificationCenterTest, WithoutABusTheCentreLogsAndGoesOn)
{
    const QDBusConnection noBus = QDBusConnection::connectToBus("unix:path=/nonexistent/veluria-bus", "veluria-no-bus");
    ASSERT_FALSE(noBus.isConnected());
    VLRFreedesktopNotificationCenter center(noBus);
    testing::StrictMock<MockNotificationCenterDelegate> delegate;
    EXPECT_CALL(delegate, userNotificationCenterShouldPresentNotification(&center, testing::_))
        .WillOnce(testing::Return(true));
    center.setDelegate(&delegate);
    center.scheduleNotification(notification("Lost", "no bus"));
    center.scheduleNotification(nullptr);
    ASSERT_TRUE(waitFor([&] { return !logLines.filter("Notification server unavailable").isEmpty(); }));
    for (const QString& line : std::as_const(logLines))
        EXPECT_TRUE(line.startsWith("5 SDKClient ")) << line.toStdString();
    QDBusConnection::disconnectFromBus("veluria-no-bus");
}

} // namespace
