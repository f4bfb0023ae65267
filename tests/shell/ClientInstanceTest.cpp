#include "shell/ClientInstance.h"
#include "fakes/FakeClientServices.h"
#include "fakes/FakeUserSession.h"
#include "pages/RecordingPages.h"
#include "platform/VLRUserDefaults.h"
#include "session/MainViewController.h"
#include "shell/AppDelegate.h"
#include "shell/LaunchArguments.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <cstdio>
#include <unistd.h>

namespace {

// Set for the copy of this test program that plays a later start.
const char* const SecondStartVariable = "VELURIA_TEST_SECOND_START";
// Its exit code when nobody else runs: it would have become the client.
constexpr int BecameTheClient = 2;

// The running client: a start with recording pages, its settings in a
// temporary folder, owning the client's name on the test's private bus.
class ClientInstanceTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (!QDBusConnection::sessionBus().isConnected())
            GTEST_SKIP() << "no session bus; run under dbus-run-session";
        delegate =
            std::make_unique<AppDelegate>(fakes.services(), [this](const ClientServices&) { return parts.take(); });
        delegate->awakeFromNib();
        instance = std::make_unique<ClientInstance>();
        ASSERT_EQ(instance->claim(), ClientInstance::ClaimedName);
        instance->setAppDelegate(delegate.get());
    }

    void TearDown() override
    {
        instance.reset();
        delegate.reset();
    }

    // Starts the program again with these arguments, lets this one answer
    // while it runs, and gives its exit code.
    static int secondStart(const QStringList& arguments)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(SecondStartVariable, "1");
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QCoreApplication::applicationFilePath(),
                      QStringList{"--gtest_filter=ClientInstanceSecondStart.*", "--"} + arguments);
        if (!QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 20000))
            return -1;
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    MainViewController* main() { return delegate->mainViewController(); }

    QTemporaryDir settings;
    FakeClientServices fakes{settings.path()};
    PageJournal journal;
    RecordingParts parts{&journal};
    std::unique_ptr<AppDelegate> delegate;
    std::unique_ptr<ClientInstance> instance;
};

} // namespace

TEST(LaunchArgumentsTest, EveryArgumentButTheLoginFlagIsALinkAsItIs)
{
    const LaunchArguments plain({"veluria"});
    EXPECT_FALSE(plain.launchedAsLoginItem());
    EXPECT_TRUE(plain.links().isEmpty());

    const LaunchArguments mixed({"veluria", "veluria:download?id=1", "--autostart", "", "  not a link ", "--other"});
    EXPECT_TRUE(mixed.launchedAsLoginItem());
    EXPECT_EQ(mixed.links(), (QStringList{"veluria:download?id=1", "", "  not a link ", "--other"}));
}

TEST_F(ClientInstanceTest, ALaterStartHandsItsLinksToTheRunningClient)
{
    // Signed out, each link waits in turn; the last one stays.
    EXPECT_EQ(secondStart({"", "https://example.com/not-ours", "veluria:download?asset=42"}), 0);
    EXPECT_EQ(main()->autoSignInURL(), "veluria:download?asset=42");

    // The waiting one starts when a session is bound; while it runs, the
    // links of another start are dropped.
    auto session = FakeUserSession::make();
    main()->didLoginWithSession(session, false);
    EXPECT_EQ(session->log.lastArguments("downloadUrl").value(0), QVariant("veluria:download?asset=42"));
    session->log.clear();
    EXPECT_EQ(secondStart({"veluria:download?asset=6"}), 0);
    EXPECT_EQ(session->log.count("downloadUrl"), 0);

    // Once it is over, the first link of the next start goes to the library
    // and the second is dropped while that one runs.
    session->downloadHandlers.complete(nullptr, std::nullopt);
    EXPECT_EQ(secondStart({"veluria:download?asset=7", "veluria:download?asset=8"}), 0);
    EXPECT_EQ(session->log.count("downloadUrl"), 1);
    EXPECT_EQ(session->log.lastArguments("downloadUrl").value(0), QVariant("veluria:download?asset=7"));
    EXPECT_TRUE(main()->downloadingURL());
}

TEST_F(ClientInstanceTest, ALaterStartWithoutLinksBringsThePopoverForwardUnlessItIsTheOneAtLogin)
{
    ASSERT_FALSE(parts.popover->shown);
    EXPECT_EQ(secondStart({"--autostart"}), 0);
    EXPECT_FALSE(parts.popover->shown);
    EXPECT_EQ(secondStart({}), 0);
    EXPECT_TRUE(parts.popover->shown);
    // Already shown, it stays so.
    EXPECT_EQ(secondStart({}), 0);
    EXPECT_TRUE(parts.popover->shown);
}

TEST_F(ClientInstanceTest, WithTheClientGoneTheNextStartBecomesTheClient)
{
    instance.reset();
    EXPECT_EQ(secondStart({"veluria:download?asset=1"}), BecameTheClient);

    // A name owner that does not answer is reported, not waited on forever.
    ClientInstance stranger;
    ASSERT_EQ(stranger.claim(), ClientInstance::ClaimedName);
    QDBusConnection::sessionBus().unregisterObject(ClientInstance::ObjectPath);
    EXPECT_EQ(secondStart({"veluria:download?asset=1"}), 1);
}

// Not a test of its own: the later start that the tests above launch.
TEST(ClientInstanceSecondStart, HandsItsArgumentsOver)
{
    if (qEnvironmentVariableIsEmpty(SecondStartVariable))
        GTEST_SKIP() << "runs only as a later start of the client";
    const QStringList all = QCoreApplication::arguments();
    const qsizetype marker = all.indexOf("--");
    const LaunchArguments arguments(QStringList{"veluria"} + (marker < 0 ? QStringList() : all.mid(marker + 1)));
    ClientInstance instance;
    const int code = instance.claim() == ClientInstance::NameTaken
        ? ClientInstance::handOverToRunningClient(QDBusConnection::sessionBus(), arguments)
        : BecameTheClient;
    std::fflush(nullptr);
    ::_exit(code);
}
