#include "shell/ClientInstance.h"
#include "fakes/FakeClientServices.h"
#include "fakes/FakeUserSession.h"
#include "pages/RecordingPages.h"
#include "platform/VLRUserDefaults.h"
#include "session/MainViewController.h"
#include "shell/AppDelegate.h"
#include "shell/LaunchArguments.h"
#include "support/TestFiles.h"

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

    // A script command sent with gdbus, as from a shell, while this client
    // answers: its error output, empty when the call succeeded.
    static QString gdbus(const QString& method, const QStringList& arguments = {})
    {
        QProcess process;
        process.start("gdbus",
                      QStringList{"call", "--session", "--dest", ClientInstance::ServiceName, "--object-path",
                                  ClientInstance::ObjectPath, "--method",
                                  ClientInstance::ScriptingInterface + "." + method}
                          + arguments);
        if (!QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 20000))
            return "timed out";
        // gdbus adds a hint on a line of its own.
        return QString::fromUtf8(process.readAllStandardError()).section('\n', 0, 0).trimmed();
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

TEST(LaunchArgumentsTest, ScriptOptionsBecomeCommandsWithPathsFromTheFolderOfTheStart)
{
    const QString here = QDir::currentPath();
    const LaunchArguments options({"veluria", "--toggle-popover", "veluria:x", "--set-download-location", "out/../dl",
                                   "--skip-opening-popover", "--toggle-environment-popup", "--show-file-drop", "a b",
                                   "/abs/c", "file:///d", "--toggle-popover"});
    using Command = LaunchArguments::ScriptCommand;
    EXPECT_EQ(options.scriptCommands(),
              (QList<Command>{{"TogglePopover", {}},
                              {"SetDownloadLocation", {here + "/dl"}},
                              {"SkipOpeningPopover", {}},
                              {"ToggleEnvironmentPopUp", {}},
                              {"DragDrop", {here + "/a b", "/abs/c", "file:///d", here + "/--toggle-popover"}},
                              {"ShowFileDrop", {}}}));
    EXPECT_EQ(options.links(), QStringList{"veluria:x"});
    EXPECT_TRUE(options.usageError().isNull());

    EXPECT_EQ(LaunchArguments({"veluria", "--show-file-drop"}).scriptCommands(),
              (QList<Command>{{"ShowFileDrop", {}}}));
    EXPECT_FALSE(LaunchArguments({"veluria", "--set-download-location"}).usageError().isNull());
    EXPECT_TRUE(LaunchArguments({"veluria", "-h"}).helpRequested());
    EXPECT_EQ(LaunchArguments({"veluria", "--show-transfers"}).actions(), QStringList{"show-transfers"});
}

TEST_F(ClientInstanceTest, EachScriptCommandDrivesTheRunningClientOverTheBus)
{
    ASSERT_FALSE(parts.popover->shown);
    EXPECT_EQ(gdbus("TogglePopover"), "");
    EXPECT_TRUE(parts.popover->shown);
    EXPECT_EQ(gdbus("TogglePopover"), "");
    EXPECT_FALSE(parts.popover->shown);

    EXPECT_EQ(gdbus("ToggleEnvironmentPopUp"), "");
    EXPECT_EQ(journal.count("login.toggleEnvironmentPopUp"), 1);
    EXPECT_EQ(gdbus("SkipOpeningPopover"), "");
    EXPECT_TRUE(delegate->skipOpeningPop());

    // Files go to the panel, replacing what it held; the popover stays as it is.
    QTemporaryDir folder;
    const QString poster = folder.path() + "/poster 1.pdf";
    writeFile(poster, "pdf");
    EXPECT_EQ(gdbus("DragDrop", {QStringLiteral("['%1', '%2']").arg(poster, QUrl::fromLocalFile(poster).toString())}),
              "");
    EXPECT_EQ(parts.fileDrop->files, (QStringList{poster, poster}));
    EXPECT_FALSE(parts.popover->shown);
    EXPECT_EQ(gdbus("DragDrop", {"@as []"}), "");
    EXPECT_TRUE(parts.fileDrop->files.isEmpty());
    // Bad paths are refused whole, and the panel keeps its files.
    parts.fileDrop->files = {"kept"};
    EXPECT_TRUE(gdbus("DragDrop", {QStringLiteral("['%1', '%2/gone.pdf']").arg(poster, folder.path())})
                    .endsWith(QStringLiteral("org.freedesktop.DBus.Error.FileNotFound: No such file: \"%1/gone.pdf\"")
                                  .arg(folder.path())));
    EXPECT_TRUE(gdbus("DragDrop", {"['poster.pdf']"})
                    .endsWith("org.freedesktop.DBus.Error.InvalidArgs: Not an absolute path or a file: URL: "
                              "\"poster.pdf\""));
    EXPECT_EQ(parts.fileDrop->files, QStringList{"kept"});

    auto session = FakeUserSession::make();
    main()->didLoginWithSession(session, false);
    EXPECT_EQ(gdbus("ShowFileDrop"), "");
    EXPECT_TRUE(parts.popover->shown);
    EXPECT_EQ(parts.tabs->selected, 1);

    // A wrong argument type is the bus's clear error (gdbus would turn the
    // number into text, so dbus-send sends it).
    QProcess send;
    send.start("dbus-send",
               {"--session", "--print-reply", "--dest=" + ClientInstance::ServiceName, ClientInstance::ObjectPath,
                ClientInstance::ScriptingInterface + ".SetDownloadLocation", "int32:5"});
    ASSERT_TRUE(QTest::qWaitFor([&] { return send.state() == QProcess::NotRunning; }, 20000));
    EXPECT_TRUE(send.readAllStandardError().startsWith("Error org.freedesktop.DBus.Error.UnknownMethod"));
}

TEST_F(ClientInstanceTest, ADownloadLocationAnswersOnlyAnOpenQuestionAndItsRefusalReachesTheScript)
{
    QTemporaryDir folder;
    EXPECT_TRUE(gdbus("SetDownloadLocation", {folder.path()})
                    .endsWith("com.veluria.Veluria.Scripting.Error.Code1: Can't set workspace location because user "
                              "is not currently being asked to set the download location for any workspace."));

    QList<QUrl> answers;
    main()->getFolderURLFromUser(
        "Choose a folder", QUrl(),
        [](const QUrl& url, vlr::OptionalError* refusal) {
            if (url.path() != "/etc")
                return true;
            *refusal = vlr::Error{"VLRFrameworkErrorDomain", -7, "Not there: \"/etc\".", {}};
            return false;
        },
        [&](const QUrl& url) { answers.append(url); });
    EXPECT_TRUE(gdbus("SetDownloadLocation", {"/etc"})
                    .endsWith("com.veluria.Veluria.Scripting.Error.CodeMinus7: Not there: \"/etc\"."));
    EXPECT_TRUE(answers.isEmpty());
    EXPECT_EQ(gdbus("SetDownloadLocation", {QUrl::fromLocalFile(folder.path()).toString()}), "");
    EXPECT_EQ(answers, QList<QUrl>{QUrl::fromLocalFile(folder.path())});
    EXPECT_FALSE(main()->workspaceLocationOpenPanel());
}

TEST_F(ClientInstanceTest, TheCommandLineScriptsTheRunningClient)
{
    EXPECT_EQ(secondStart({"--toggle-popover"}), 0);
    EXPECT_TRUE(parts.popover->shown);
    // A start that only scripts brings nothing forward by itself.
    EXPECT_EQ(secondStart({"--toggle-popover"}), 0);
    EXPECT_FALSE(parts.popover->shown);

    QTemporaryDir folder;
    writeFile(folder.path() + "/a.txt", "a");
    EXPECT_EQ(secondStart({"--show-file-drop", folder.path() + "/a.txt"}), 0);
    EXPECT_EQ(parts.fileDrop->files, QStringList{folder.path() + "/a.txt"});
    EXPECT_TRUE(parts.popover->shown);

    // A refusal ends the start with 1 and stops the commands after it.
    EXPECT_EQ(secondStart({"--set-download-location", folder.path(), "--toggle-popover"}), 1);
    EXPECT_TRUE(parts.popover->shown);

    // The desktop entry's action opens the popover on the uploads list.
    parts.popover->shown = false;
    EXPECT_EQ(secondStart({"--show-transfers"}), 0);
    EXPECT_TRUE(parts.popover->shown);
    EXPECT_EQ(journal.entries.last(), "transfers.showTab 1 ");
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
