#include "shell/AppDelegate.h"
#include "app/VLRUserDefaultsKeys.h"
#include "fakes/FakeClientServices.h"
#include "fakes/FakeUserSession.h"
#include "fakes/RecordingNotificationCenter.h"
#include "pages/RecordingPages.h"
#include "platform/VLRNotificationScheduling.h"
#include "platform/VLRUserDefaults.h"
#include "platform/VLRUserNotificationCenter.h"
#include "service/VLRLogFormat.h"
#include "service/VLRLogHandler.h"
#include "session/MainViewController.h"
#include "shell/TerminationSignalWatcher.h"
#include "support/CapturedLog.h"
#include "support/ScopedEnvironment.h"
#include "support/TestFiles.h"
#include "widgets/VLRWindowAdditions.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <csignal>

namespace {

void wait(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

// A start of the client in a home of its own: settings, data and bookmarks
// all under a temporary folder.
class AppDelegateTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        environment.set("HOME", home.path());
        environment.set("XDG_CONFIG_HOME", home.path() + "/.config");
        environment.set("XDG_DATA_HOME", home.path() + "/.local/share");
    }

    std::unique_ptr<AppDelegate> start(RecordingParts* parts = nullptr)
    {
        auto delegate = std::make_unique<AppDelegate>(fakes.services(), [parts](const ClientServices&) {
            return parts ? parts->take() : MainViewControllerParts();
        });
        delegate->awakeFromNib();
        return delegate;
    }

    VLRUserDefaults* defaults() { return fakes.defaults.get(); }
    FakeService& service() { return fakes.library; }

    QTemporaryDir home;
    FakeClientServices fakes{home.path() + "/.config/Veluria"};
    ScopedEnvironment environment;
    CapturedLog log;
    std::shared_ptr<RecordingNotificationCenter> notifications = fakes.notificationCenter;
};

} // namespace

TEST_F(AppDelegateTest, TheFirstLaunchMakesTheUserFolderAndPutsItFirstInTheFavourites)
{
    writeFile(home.path() + "/.config/gtk-3.0/bookmarks", "file:///srv/music Music\nfile:///srv/films\n");
    auto delegate = start();

    EXPECT_TRUE(QFileInfo(home.path() + "/Veluria").isDir());
    QFile bookmarks(home.path() + "/.config/gtk-3.0/bookmarks");
    ASSERT_TRUE(bookmarks.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(bookmarks.readAll()),
              QUrl::fromLocalFile(home.path() + "/Veluria").toString()
                  + " Veluria\nfile:///srv/music Music\nfile:///srv/films\n");
    EXPECT_TRUE(defaults()->objectForKey(VLRUserDefaultsKeyFirstLaunchDate).toDateTime().isValid());
    EXPECT_TRUE(defaults()->boolForKey(VLRUserDefaultsKeyShowNotifications));
    EXPECT_TRUE(defaults()->boolForKey(VLRUserDefaultsKeyAutoOpenAssets));
    EXPECT_EQ(defaults()->objectForKey(VLRUserDefaultsKeyLimitDownloadCacheSize), QVariant(false));
    EXPECT_FALSE(defaults()->objectForKey(VLRUserDefaultsKeyLaunchRestProxy).isValid());
    EXPECT_EQ(service().log.names().first(), "initUsingCrashlytics");
    EXPECT_EQ(service().log.calls().first().arguments, QVariantList{true});
}

TEST_F(AppDelegateTest, AUserFolderThatCannotBeMadeLeavesTheFirstLaunchForNextTime)
{
    writeFile(home.path() + "/blocker", "a file where a folder should be");
    environment.set("HOME", home.path() + "/blocker/home");
    {
        auto delegate = start();
        EXPECT_TRUE(
            log.contains(QStringLiteral("5 SDKClient Error: Create directory failed for: %1/blocker/home/Veluria/")
                             .arg(home.path())));
        EXPECT_FALSE(defaults()->objectForKey(VLRUserDefaultsKeyFirstLaunchDate).isValid());
        EXPECT_FALSE(defaults()->objectForKey(VLRUserDefaultsKeyShowNotifications).isValid());
        EXPECT_FALSE(defaults()->boolForKey(VLRUserDefaultsKeyAutoOpenAssets));
    }
    // The folder exists already at the next launch: the rest is done then.
    environment.set("HOME", home.path());
    QDir(home.path()).mkdir("Veluria");
    fakes.restart();
    auto delegate = start();
    EXPECT_TRUE(defaults()->objectForKey(VLRUserDefaultsKeyFirstLaunchDate).isValid());
    EXPECT_TRUE(QFile::exists(home.path() + "/.config/gtk-3.0/bookmarks"));
}

TEST_F(AppDelegateTest, ARestartKeepsTheUsersChoices)
{
    {
        auto delegate = start();
        defaults()->setBool(false, VLRUserDefaultsKeyShowNotifications);
        defaults()->setBool(false, VLRUserDefaultsKeyAutoOpenAssets);
        defaults()->synchronize();
    }
    const QVariant firstLaunch = defaults()->objectForKey(VLRUserDefaultsKeyFirstLaunchDate);
    fakes.restart();
    auto delegate = start();
    EXPECT_FALSE(defaults()->boolForKey(VLRUserDefaultsKeyShowNotifications));
    EXPECT_FALSE(defaults()->boolForKey(VLRUserDefaultsKeyAutoOpenAssets));
    EXPECT_EQ(defaults()->objectForKey(VLRUserDefaultsKeyFirstLaunchDate), firstLaunch);
}

TEST_F(AppDelegateTest, TheLaunchHandsOverTheDatabaseAndTheEnvironmentAndOpensThePopoverASecondLater)
{
    PageJournal journal;
    RecordingParts parts(&journal);
    auto delegate = start(&parts);
    delegate->applicationDidFinishLaunching();

    EXPECT_EQ(service().databaseLocation, QUrl::fromLocalFile(home.path() + "/.local/share/Veluria/"));
    EXPECT_EQ(service().log.count("setEnvironmentWithDomainName"), 0);
    EXPECT_EQ(service().versionCheckers.size(), 1);
    EXPECT_EQ(notifications->delegate(), delegate->mainViewController());
    EXPECT_FALSE(parts.popover->shown);
    wait(1200);
    EXPECT_TRUE(parts.popover->shown);

    // A stored environment is applied; no network means no version check.
    defaults()->setPersistentDomain({{VLRUserDefaultsKeyEnvironment, "staging.veluria.test"}, {"other", 1}},
                                    VLRUserDefaultsPersistentDomain);
    service().networkStatus = 0;
    PageJournal journal2;
    RecordingParts loginItemParts(&journal2);
    auto second = start(&loginItemParts);
    second->setLaunchedAsLoginItem(true);
    second->applicationDidFinishLaunching();
    EXPECT_EQ(service().log.lastArguments("setEnvironmentWithDomainName"), QVariantList{"staging.veluria.test"});
    EXPECT_EQ(service().versionCheckers.size(), 1);
    EXPECT_TRUE(second->skipOpeningPop());
    wait(1200);
    EXPECT_FALSE(loginItemParts.popover->shown);

    // An empty stored name is a value, and is applied.
    defaults()->setPersistentDomain({{VLRUserDefaultsKeyEnvironment, ""}}, VLRUserDefaultsPersistentDomain);
    auto third = start();
    third->applicationDidFinishLaunching();
    EXPECT_EQ(service().log.count("setEnvironmentWithDomainName"), 2);
    EXPECT_EQ(service().log.lastArguments("setEnvironmentWithDomainName"), QVariantList{""});
}

TEST_F(AppDelegateTest, TheStatusItemsWindowIsKeyOnlyWithThePopoverWhichGlidesAfterTheIcon)
{
    PageJournal journal;
    RecordingParts parts(&journal);
    auto delegate = start(&parts);
    RecordingPopover* popover = parts.popover;
    EXPECT_FALSE(vlr_canBecomeKeyWindow(delegate->statusItemView()));
    popover->shown = true;
    EXPECT_TRUE(vlr_canBecomeKeyWindow(delegate->statusItemView()));

    // The popover's window glides by the distance the icon moved, not in one
    // jump; a second move adds to the first.
    QWidget* window = popover->window();
    window->move(300, 40);
    const QPointF icon = delegate->statusItemFrame().topLeft();
    delegate->statusItemDidMove(QRectF(icon + QPointF(20, 0), QSizeF(24, 24)));
    delegate->statusItemDidMove(QRectF(icon + QPointF(20, 10), QSizeF(24, 24)));
    EXPECT_EQ(window->pos(), QPoint(300, 40));
    EXPECT_TRUE(QTest::qWaitFor([window] { return window->pos() == QPoint(320, 50); }, 2000));
    wait(300);
    EXPECT_EQ(window->pos(), QPoint(320, 50));
}

TEST_F(AppDelegateTest, TheStopAsksTheUpdaterThenLogsOutStopsTheProxyAndShutsTheLibraryDown)
{
    auto delegate = start();
    delegate->applicationDidFinishLaunching();
    auto session = FakeUserSession::make();
    delegate->mainViewController()->didLoginWithSession(session, true);
    QSignalSpy ended(delegate.get(), &AppDelegate::terminated);

    service().canLogout = false;
    service().canLogoutError = vlr::Error{"VLRFrameworkErrorDomain", 7, "Installing Veluria 2.1.", {}};
    delegate->terminate();
    EXPECT_EQ(ended.count(), 0);
    ASSERT_EQ(notifications->scheduledNotifications().size(), 1u);
    EXPECT_EQ(notifications->lastScheduledNotification()->title(),
              "Veluria is busy updating software...please stand by");
    EXPECT_EQ(notifications->lastScheduledNotification()->informativeText(), "Installing Veluria 2.1.");
    EXPECT_EQ(session->log.count("logoutWithCompletionHandler"), 0);

    // Two proxies run: both are asked to stop.
    QTemporaryDir bin;
    const QString proxy = bin.filePath("veluria-rest-proxy");
    QFile::copy("/bin/sleep", proxy);
    QProcess first, second;
    first.start(proxy, {"30"});
    second.start(proxy, {"30"});
    ASSERT_TRUE(first.waitForStarted() && second.waitForStarted());

    service().canLogout = true;
    delegate->terminate();
    EXPECT_EQ(ended.count(), 1);
    EXPECT_EQ(session->log.lastArguments("logoutWithCompletionHandler"), QVariantList{false});
    EXPECT_TRUE(first.waitForFinished(5000));
    EXPECT_TRUE(second.waitForFinished(5000));
    EXPECT_EQ(first.exitStatus(), QProcess::CrashExit);
    EXPECT_TRUE(defaults()->boolForKey(VLRUserDefaultsKeyLaunchRestProxy));
    EXPECT_EQ(service().log.names().last(), "shutdown");
}

TEST_F(AppDelegateTest, TheProxyIsStartedOnlyIfItWasStoppedAndNeverTriedTwice)
{
    defaults()->setBool(true, VLRUserDefaultsKeyLaunchRestProxy);
    environment.set("PATH", home.path());
    auto delegate = start();
    delegate->applicationDidFinishLaunching();
    EXPECT_TRUE(log.contains(
        "4 RestProxy Bundle Identifier \"veluria-rest-proxy\" is invalid or specified app is not installed"));
    EXPECT_EQ(defaults()->objectForKey(VLRUserDefaultsKeyLaunchRestProxy), QVariant(false));

    // Installed but unable to start: logged with the reason, and off again.
    const QString proxy = home.path() + "/veluria-rest-proxy";
    const QString failed = QStringLiteral("4 RestProxy RestProxy could not launch. error = ");
    writeFile(proxy, "#!/nonexistent/interpreter\n", QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    defaults()->setBool(true, VLRUserDefaultsKeyLaunchRestProxy);
    log.clear();
    delegate->launchRestProxy();
    ASSERT_EQ(log.size(), 1);
    EXPECT_TRUE(log.first().startsWith(failed) && log.first().size() > failed.size()) << log.first().toStdString();
    EXPECT_EQ(defaults()->objectForKey(VLRUserDefaultsKeyLaunchRestProxy), QVariant(false));

    writeFile(proxy, "#!/bin/sh\nexit 0\n");
    defaults()->setBool(true, VLRUserDefaultsKeyLaunchRestProxy);
    log.clear();
    delegate->launchRestProxy();
    EXPECT_EQ(log, QStringList{"4 RestProxy RestProxy launched successfully!"});
}

TEST(TerminationSignalWatcherTest, AStopSignalArrivesOnTheEventLoop)
{
    TerminationSignalWatcher watcher;
    QSignalSpy requested(&watcher, &TerminationSignalWatcher::terminationRequested);
    ::raise(SIGTERM);
    EXPECT_TRUE(requested.wait(2000));
    EXPECT_EQ(requested.value(0).value(0).toInt(), SIGTERM);
}
