#include "platform/NotificationDaemonMock.h"
#include "platform/VLRFreedesktopNotificationCenter.h"
#include "platform/VLRUserNotificationCenterDelegate.h"
#include "service/VLRLogFormat.h"

#include <QDBusConnection>
#include <QDateTime>

#include <gtest/gtest.h>

#include <memory>

namespace {

struct Activation
{
    VLRUserNotificationPtr notification;
    VLRUserNotificationActivationType type;
};

class RecordingDelegate : public VLRUserNotificationCenterDelegate
{
public:
    bool userNotificationCenterShouldPresentNotification(VLRUserNotificationCenter*,
                                                         const VLRUserNotificationPtr& notification) override
    {
        return !hiddenTitles.contains(notification->title());
    }

    void userNotificationCenterDidActivateNotification(VLRUserNotificationCenter*,
                                                       const VLRUserNotificationPtr& notification) override
    {
        activations.push_back({notification, notification->activationType()});
    }

    QStringList hiddenTitles;
    std::vector<Activation> activations;
};

VLRUserNotificationPtr makeNotification(const QString& title, const QString& text, const QString& actionButtonTitle = QString(),
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

struct LogLine
{
    int level;
    QString tag;
    QString message;
};

class FreedesktopNotificationCenterTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        vlr::setLogFilePath(QString());
        vlr::setLogObserver([this](int level, const QString& tag, const QString& message) {
            logLines.push_back({level, tag, message});
        });
    }

    void TearDown() override { vlr::setLogObserver(nullptr); }

    // A session bus on which the tests may run a notification server of
    // their own: none runs there yet.
    static bool privateSessionBusAvailable()
    {
        return QDBusConnection::sessionBus().isConnected() && !NotificationDaemonMock::serverIsOnBus();
    }

    void startServer(NotificationDaemonMock& server)
    {
        QString error;
        ASSERT_TRUE(server.start(&error)) << error.toStdString();
    }

    std::vector<LogLine> logLines;
};

#define REQUIRE_PRIVATE_SESSION_BUS()                                                                        \
    if (!privateSessionBusAvailable())                                                                                 \
    GTEST_SKIP() << "needs a private D-Bus session bus without a notification server: run under "          \
                    "dbus-run-session --config-file=tests/support/session-bus.conf"

TEST_F(FreedesktopNotificationCenterTest, SendsWhatTheServerExpectsAndEscapesBodyMarkup)
{
    REQUIRE_PRIVATE_SESSION_BUS();
    NotificationDaemonMock server(QStringLiteral("actions body body-markup"));
    startServer(server);
    VLRFreedesktopNotificationCenter center;

    center.scheduleNotification(makeNotification(QStringLiteral("Error uploading project: \"<b>Plan</b>\""),
                                                 QStringLiteral("Disk <full> & \"more\"")));
    center.scheduleNotification(makeNotification(QStringLiteral("Update Available"), QStringLiteral("Muli & Co has an update"),
                                                 QStringLiteral("Update")));
    ASSERT_TRUE(waitUntil([&] { return server.calls(QStringLiteral("Notify")).size() == 2; }));

    const QList<QVariantList> notify = server.calls(QStringLiteral("Notify"));
    const QVariantMap hints{{QStringLiteral("desktop-entry"), QStringLiteral("veluria")}};
    EXPECT_EQ(notify[0], (QVariantList{QStringLiteral("Veluria"), 0u, QStringLiteral("veluria"),
                                       QStringLiteral("Error uploading project: \"<b>Plan</b>\""),
                                       QStringLiteral("Disk &lt;full&gt; &amp; \"more\""),
                                       QStringList{QStringLiteral("default"), QStringLiteral("Open")}, hints, -1}));
    EXPECT_EQ(notify[1], (QVariantList{QStringLiteral("Veluria"), 0u, QStringLiteral("veluria"), QStringLiteral("Update Available"),
                                       QStringLiteral("Muli &amp; Co has an update"),
                                       QStringList{QStringLiteral("default"), QStringLiteral("Open"), QStringLiteral("action"),
                                                   QStringLiteral("Update")},
                                       hints, -1}));
    EXPECT_EQ(server.calls(QStringLiteral("GetCapabilities")).size(), 1);
    EXPECT_TRUE(logLines.empty());
}

TEST_F(FreedesktopNotificationCenterTest, WithoutBodyMarkupTheBodyGoesAsItIs)
{
    REQUIRE_PRIVATE_SESSION_BUS();
    NotificationDaemonMock server(QStringLiteral("actions body"));
    startServer(server);
    VLRFreedesktopNotificationCenter center;

    center.scheduleNotification(makeNotification(QStringLiteral("New message in <Team>"), QStringLiteral("Ann: <i>see</i> & reply")));
    ASSERT_TRUE(waitUntil([&] { return server.calls(QStringLiteral("Notify")).size() == 1; }));
    const QVariantList notify = server.calls(QStringLiteral("Notify")).constFirst();
    EXPECT_EQ(notify[3], QStringLiteral("New message in <Team>"));
    EXPECT_EQ(notify[4], QStringLiteral("Ann: <i>see</i> & reply"));
}

TEST_F(FreedesktopNotificationCenterTest, ActivationsReachTheDelegateAndCloseTheNotification)
{
    REQUIRE_PRIVATE_SESSION_BUS();
    NotificationDaemonMock server(QStringLiteral("actions body body-markup"));
    startServer(server);
    VLRFreedesktopNotificationCenter center;
    RecordingDelegate delegate;
    delegate.hiddenTitles << QStringLiteral("Hidden");
    center.setDelegate(&delegate);

    const QVariantMap failedInfo{{QStringLiteral("VLRUserNotificationTypeKey"), QStringLiteral("VLRUserNotificationTypeTransferFailed")},
                                 {QStringLiteral("VLRUserNotificationObjectIdentifierKey"), QStringLiteral("t-17")}};
    const QVariantMap updateInfo{{QStringLiteral("VLRUserNotificationTypeKey"), QStringLiteral("VLRUserNotificationTypeUpdateAvailable")},
                                 {QStringLiteral("VLRUserNotificationObjectIdentifierKey"), QStringLiteral("inst-3")}};
    const auto failed = makeNotification(QStringLiteral("Error uploading project: \"Plan\""), QStringLiteral("Gone"), QString(), failedInfo);
    const auto hidden = makeNotification(QStringLiteral("Hidden"), QStringLiteral("not for the user"));
    const auto update = makeNotification(QStringLiteral("Update Available"), QStringLiteral("Muli has an update"),
                                         QStringLiteral("Update"), updateInfo);
    const auto last = makeNotification(QStringLiteral("Thank You!"), QStringLiteral("Your new purchase is available for download"));
    center.scheduleNotification(failed);
    center.scheduleNotification(hidden);
    center.scheduleNotification(update);
    center.scheduleNotification(last);
    // The server numbers what it shows from 1 on: failed 1, update 2, last 3.
    ASSERT_TRUE(waitUntil([&] { return server.calls(QStringLiteral("Notify")).size() == 3; }));
    EXPECT_EQ(server.calls(QStringLiteral("Notify"))[1][3], QStringLiteral("Update Available"));

    server.emitActionInvoked(1, QStringLiteral("default"));
    ASSERT_TRUE(waitUntil([&] { return delegate.activations.size() == 1; }));
    EXPECT_EQ(delegate.activations[0].notification, failed);
    EXPECT_EQ(delegate.activations[0].type, VLRUserNotificationActivationTypeContentsClicked);
    EXPECT_EQ(delegate.activations[0].notification->userInfo(), failedInfo);
    ASSERT_TRUE(waitUntil([&] { return server.calls(QStringLiteral("CloseNotification")).size() == 1; }));
    EXPECT_EQ(server.calls(QStringLiteral("CloseNotification"))[0], QVariantList{1u});

    server.emitActionInvoked(2, QStringLiteral("action"));
    ASSERT_TRUE(waitUntil([&] { return delegate.activations.size() == 2; }));
    EXPECT_EQ(delegate.activations[1].notification, update);
    EXPECT_EQ(delegate.activations[1].type, VLRUserNotificationActivationTypeActionButtonClicked);
    EXPECT_EQ(delegate.activations[1].notification->userInfo(), updateInfo);
    ASSERT_TRUE(waitUntil([&] { return server.calls(QStringLiteral("CloseNotification")).size() == 2; }));
    EXPECT_EQ(server.calls(QStringLiteral("CloseNotification"))[1], QVariantList{2u});

    // Signals for another program's notification, for one already activated,
    // and an action the centre never offered are all ignored; the click on
    // the last one shows that they have been seen.
    server.emitActionInvoked(999, QStringLiteral("default"));
    server.emitActionInvoked(1, QStringLiteral("default"));
    server.emitActionInvoked(3, QStringLiteral("snooze"));
    server.emitActionInvoked(3, QStringLiteral("default"));
    ASSERT_TRUE(waitUntil([&] { return delegate.activations.size() >= 3; }));
    ASSERT_TRUE(waitUntil([&] { return server.calls(QStringLiteral("CloseNotification")).size() >= 3; }));
    EXPECT_EQ(delegate.activations.size(), 3u);
    EXPECT_EQ(delegate.activations[2].notification, last);
    EXPECT_EQ(server.calls(QStringLiteral("CloseNotification")), (QList<QVariantList>{{1u}, {2u}, {3u}}));
    center.setDelegate(nullptr);
}

TEST_F(FreedesktopNotificationCenterTest, ANotificationGoesOutNotBeforeItsDeliveryDate)
{
    REQUIRE_PRIVATE_SESSION_BUS();
    NotificationDaemonMock server(QStringLiteral("actions body"));
    startServer(server);
    VLRFreedesktopNotificationCenter center;

    auto later = makeNotification(QStringLiteral("Later"), QStringLiteral("one second on"));
    later->setDeliveryDate(QDateTime::currentDateTime().addMSecs(1000));
    auto overdue = makeNotification(QStringLiteral("Overdue"), QStringLiteral("a minute ago"));
    overdue->setDeliveryDate(QDateTime::currentDateTime().addSecs(-60));
    center.scheduleNotification(later);
    center.scheduleNotification(overdue);

    const auto titles = [&] {
        QStringList sent;
        for (const QVariantList& call : server.calls(QStringLiteral("Notify")))
            sent << call[3].toString();
        return sent;
    };
    // Seen before its date means it was sent before its date.
    bool sentEarly = false;
    waitUntil([&] {
        const bool before = QDateTime::currentDateTime() < later->deliveryDate().addMSecs(-50);
        sentEarly = sentEarly || titles().contains(QStringLiteral("Later"));
        return !before;
    });
    EXPECT_FALSE(sentEarly);
    ASSERT_TRUE(waitUntil([&] { return titles().size() == 2; }));
    EXPECT_EQ(titles(), (QStringList{QStringLiteral("Overdue"), QStringLiteral("Later")}));
}

TEST_F(FreedesktopNotificationCenterTest, WithoutAServerTheCentreLogsAndGoesOnWithTheNextOne)
{
    REQUIRE_PRIVATE_SESSION_BUS();
    VLRFreedesktopNotificationCenter center;

    center.scheduleNotification(makeNotification(QStringLiteral("Lost"), QStringLiteral("nobody listens")));
    ASSERT_TRUE(waitUntil([&] { return !logLines.empty(); }));
    ASSERT_EQ(logLines.size(), 1u);
    EXPECT_EQ(logLines[0].level, 5);
    EXPECT_EQ(logLines[0].tag, QStringLiteral("SDKClient"));
    EXPECT_TRUE(logLines[0].message.startsWith(
        QStringLiteral("Notification server unavailable, 1 notification(s) not shown: org.freedesktop.DBus.Error.ServiceUnknown: ")))
        << logLines[0].message.toStdString();

    // A server that comes up later is used from then on.
    NotificationDaemonMock server(QStringLiteral("actions body body-markup"));
    startServer(server);
    center.scheduleNotification(makeNotification(QStringLiteral("Found"), QStringLiteral("a & b")));
    ASSERT_TRUE(waitUntil([&] { return server.calls(QStringLiteral("Notify")).size() == 1; }));
    EXPECT_EQ(server.calls(QStringLiteral("Notify"))[0][4], QStringLiteral("a &amp; b"));

    // Another server may read the body otherwise: it is asked afresh.
    server.stop();
    NotificationDaemonMock plainServer(QStringLiteral("actions body"));
    startServer(plainServer);
    center.scheduleNotification(makeNotification(QStringLiteral("Plain"), QStringLiteral("c & d")));
    ASSERT_TRUE(waitUntil([&] { return plainServer.calls(QStringLiteral("Notify")).size() == 1; }));
    EXPECT_EQ(plainServer.calls(QStringLiteral("Notify"))[0][4], QStringLiteral("c & d"));
    EXPECT_EQ(logLines.size(), 1u);
}

TEST_F(FreedesktopNotificationCenterTest, WithoutABusTheCentreLogsAndGoesOn)
{
    const QDBusConnection noBus = QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent/veluria-bus"),
                                                                QStringLiteral("veluria-no-bus"));
    ASSERT_FALSE(noBus.isConnected());
    VLRFreedesktopNotificationCenter center(noBus);
    RecordingDelegate delegate;
    center.setDelegate(&delegate);

    center.scheduleNotification(makeNotification(QStringLiteral("Lost"), QStringLiteral("no bus")));
    center.scheduleNotification(nullptr);
    ASSERT_TRUE(waitUntil([&] {
        return std::any_of(logLines.begin(), logLines.end(),
                           [](const LogLine& line) { return line.message.startsWith(QStringLiteral("Notification server unavailable")); });
    }));
    for (const LogLine& line : logLines) {
        EXPECT_EQ(line.level, 5);
        EXPECT_EQ(line.tag, QStringLiteral("SDKClient"));
    }
    EXPECT_TRUE(delegate.activations.empty());
    QDBusConnection::disconnectFromBus(QStringLiteral("veluria-no-bus"));
}

} // namespace
