// The ten-minute version check, its postponement and its dialogs, on a clock
// that stands still until the test moves it.

#include "app/VLRUserDefaultsKeys.h"
#include "fakes/FakeClientServices.h"
#include "fakes/FakeVersionInfo.h"
#include "platform/VLRUserDefaults.h"
#include "platform/VLRUserNotification.h"
#include "shell/AppDelegate.h"
#include "support/CapturedLog.h"
#include "support/ScopedEnvironment.h"
#include "support/TestFiles.h"
#include "update/ReleaseNotesView.h"
#include "update/UpdateAlertController.h"
#include "update/UpdateEULAController.h"
#include "widgets/VLRFonts.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

class UpdateControlTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        environment.set("HOME", home.path());
        environment.set("XDG_CONFIG_HOME", home.path() + "/.config");
        environment.set("XDG_DATA_HOME", home.path() + "/.local/share");
        // Helper programs come from this folder alone.
        QDir(home.path()).mkdir("bin");
        environment.set("PATH", home.path() + "/bin:/usr/bin:/bin");
        delegate = std::make_unique<AppDelegate>(fakes.services(), nullptr);
        delegate->setClock([this] { return fakes.now; });
        delegate->awakeFromNib();
        delegate->applicationDidFinishLaunching();
    }

    FakeService& service() { return fakes.library; }
    VLRUserDefaults* defaults() { return fakes.defaults.get(); }
    QDateTime postponedDate() { return defaults()->objectForKey(VLRUserDefaultsKeyUpdatePostponedDate).toDateTime(); }

    // The pending tick, brought forward to now: the checker it made.
    std::shared_ptr<FakeVersionChecker> tick()
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return delegate->updateTimer() && delegate->updateTimer()->isActive(); }));
        const qsizetype before = service().versionCheckers.size();
        delegate->checkForSoftwareUpdates();
        EXPECT_TRUE(QTest::qWaitFor([&] { return service().versionCheckers.size() > before; }));
        return service().versionCheckers.value(before);
    }

    // A tick that finds the version out of date or unsupported and hands
    // over this record: the dialog it opened, if any.
    UpdateAlertController* offer(bool unsupported, const VLRVersionInfoPtr& info)
    {
        auto checker = tick();
        checker->checkHandlers.complete(unsupported, !unsupported, std::nullopt);
        if (checker->infoHandlers.isEmpty())
            return nullptr;
        checker->infoHandlers.complete(std::nullopt, info);
        return delegate->updateAlertController();
    }

    // Presses a button of the update dialog; the modal polling sees it.
    void press(bool install)
    {
        UpdateAlertController* alert = delegate->updateAlertController();
        (install ? alert->installButton() : alert->remindButton())->click();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !delegate->updateDialogIsShowing(); }));
    }

    // A stand-in installer that notes its arguments and ends.
    QString installInstaller()
    {
        const QString path = home.path() + "/bin/veluria-installer";
        writeFile(path, "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$0.arguments\"\n");
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path + ".arguments";
    }

    QTemporaryDir home;
    ScopedEnvironment environment;
    FakeClientServices fakes{home.path() + "/.config/Veluria"};
    CapturedLog log;
    std::unique_ptr<AppDelegate> delegate;
};

} // namespace

TEST_F(UpdateControlTest, EachTickArmsTheNextInTenMinutesAndChecksOnlyWithANetwork)
{
    // The launch checks at once.
    ASSERT_EQ(service().versionCheckers.size(), 1);
    service().versionCheckers.value(0)->checkHandlers.complete(false, true, std::nullopt);
    EXPECT_TRUE(log.contains("4 VeluriaSWUpdate AppDelegate - versionInfo: unsupported=0, outOfDate=1, "
                             "lastPostponedDate=(null), doOutOfDate=1"));
    QPointer<QTimer> fired;
    EXPECT_TRUE(QTest::qWaitFor([&] { return (fired = delegate->updateTimer()); }));
    tick();
    // The fired timer makes way for a new one-shot, ten minutes ahead.
    EXPECT_TRUE(QTest::qWaitFor([&] { return delegate->updateTimer() && delegate->updateTimer() != fired; }));
    EXPECT_TRUE(delegate->updateTimer()->isSingleShot());
    EXPECT_GT(delegate->updateTimer()->remainingTime(), 599000);

    // Without a network a tick asks nothing, and the next one is armed all
    // the same.
    service().networkStatus = 0;
    QPointer<QTimer> second = delegate->updateTimer();
    delegate->checkForSoftwareUpdates();
    EXPECT_TRUE(QTest::qWaitFor([&] { return delegate->updateTimer() != second && delegate->updateTimer(); }));
    EXPECT_EQ(service().versionCheckers.size(), 2);
}

TEST_F(UpdateControlTest, APostponementHoldsForStrictlyLessThanADayAndNeverSilencesAnUnsupportedVersion)
{
    auto outOfDateInfoAsked = [&](const QDateTime& postponed) {
        defaults()->setObject(postponed, VLRUserDefaultsKeyUpdatePostponedDate);
        auto checker = tick();
        checker->checkHandlers.complete(false, true, std::nullopt);
        return checker->infoHandlers.count() == 1;
    };
    EXPECT_FALSE(outOfDateInfoAsked(fakes.now.addSecs(-86399)));
    EXPECT_TRUE(log.contains("4 VeluriaSWUpdate AppDelegate - versionInfo: unsupported=0, outOfDate=1, "
                             "lastPostponedDate=2026-11-21T10:00:01, doOutOfDate=0"));
    EXPECT_TRUE(outOfDateInfoAsked(fakes.now.addSecs(-86400)));
    // A date in the future holds until a day after it.
    const QDateTime future = fakes.now.addSecs(3600);
    EXPECT_FALSE(outOfDateInfoAsked(future));
    fakes.now = future.addSecs(86399);
    EXPECT_FALSE(outOfDateInfoAsked(future));
    fakes.now = future.addSecs(86400);
    EXPECT_TRUE(outOfDateInfoAsked(future));

    defaults()->setObject(fakes.now, VLRUserDefaultsKeyUpdatePostponedDate);
    auto checker = tick();
    checker->checkHandlers.complete(true, true, std::nullopt);
    EXPECT_EQ(checker->infoHandlers.count(), 1);

    // A failed check shows nothing.
    auto failed = tick();
    failed->checkHandlers.complete(true, true, vlr::Error{"VLRWebErrorDomain", 1, "offline", {}});
    EXPECT_EQ(failed->infoHandlers.count(), 0);
}

TEST_F(UpdateControlTest, TheDialogSaysWhetherTheVersionIsOutOfDateOrUnsupportedAndNamesAnyOtherService)
{
    UpdateAlertController* alert = offer(false, FakeVersionInfo::make("2.1 (spring)", "<p>Faster uploads</p>"));
    ASSERT_NE(alert, nullptr);
    EXPECT_TRUE(delegate->updateDialogIsShowing());
    EXPECT_EQ(alert->titleText(), "A newer version of Veluria is available.");
    EXPECT_EQ(alert->descriptionText(), "Please download the latest version. (2.1 (spring))");
    EXPECT_EQ(alert->installButton()->text(), "Install Update");
    EXPECT_EQ(alert->remindButton()->text(), "Remind Me Later");
    EXPECT_EQ(alert->releaseNotesView()->toPlainText(), "Faster uploads");

    // A tick while it is open checks, and stops there.
    EXPECT_EQ(offer(true, FakeVersionInfo::make("9")), alert);
    press(false);
    EXPECT_EQ(postponedDate(), fakes.now);

    service().environmentNumber = 2;
    service().domainName = "staging.veluria.test";
    alert = offer(true, nullptr);
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->titleText(), "This version of Veluria is no longer supported.");
    EXPECT_EQ(alert->descriptionText(), "Please download the latest version. ((null)) - staging.veluria.test");
    EXPECT_EQ(alert->remindButton()->text(), "Logout");
    EXPECT_TRUE(alert->releaseNotesView()->toPlainText().isEmpty());
    // "Logout" only closes it: no postponement, no sign-out.
    fakes.now = fakes.now.addSecs(60);
    press(false);
    EXPECT_EQ(postponedDate(), fakes.now.addSecs(-60));
    EXPECT_FALSE(delegate->updateAlertController());
}

TEST_F(UpdateControlTest, InstallingAgreesToTheTermsFirstAndStartsTheInstallerSilently)
{
    const QString arguments = installInstaller();
    // Empty terms are terms: they are shown, empty.
    ASSERT_TRUE(offer(false, FakeVersionInfo::make("2.1", "", "")));
    press(true);
    UpdateEULAController* terms = delegate->updateEULAController();
    ASSERT_NE(terms, nullptr);
    EXPECT_TRUE(terms->textView()->toPlainText().isEmpty());
    // The gap: while the terms are open, a tick may open the update dialog.
    ASSERT_TRUE(offer(false, FakeVersionInfo::make("2.1")));
    press(false);
    const QDateTime remindedAt = fakes.now;
    fakes.now = fakes.now.addSecs(5);
    terms->reject(); // Escape: disagreeing, which postpones
    EXPECT_TRUE(QTest::qWaitFor([&] { return !delegate->updateEULAController(); }));
    EXPECT_EQ(postponedDate(), remindedAt.addSecs(5));
    EXPECT_FALSE(QFile::exists(arguments));

    defaults()->removeObjectForKey(VLRUserDefaultsKeyUpdatePostponedDate);
    ASSERT_TRUE(offer(false, FakeVersionInfo::make("2.1", "", "Be nice.")));
    press(true);
    ASSERT_TRUE(delegate->updateEULAController());
    EXPECT_EQ(delegate->updateEULAController()->textView()->toPlainText(), "Be nice.");
    delegate->updateEULAController()->onAgree();
    EXPECT_TRUE(QTest::qWaitFor([&] { return readFile(arguments) == "silent\n"; }));
    EXPECT_TRUE(fakes.notificationCenter->scheduledNotifications().empty());
}

TEST_F(UpdateControlTest, AMissingInstallerIsToldAndTheDownloadPageOpensAndARunningOneKeepsTheDialogAway)
{
    ASSERT_TRUE(offer(false, FakeVersionInfo::make("2.1")));
    press(true);
    const auto& shown = fakes.notificationCenter->scheduledNotifications();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown.front()->title(), "Error updating Veluria");
    EXPECT_EQ(shown.front()->informativeText(),
              QStringLiteral("Can't find installer app at \"%1/veluria-installer\"")
                  .arg(QCoreApplication::applicationDirPath()));
    EXPECT_EQ(fakes.desktop->openedURLs(), QList<QUrl>{QUrl("https://veluria.example.org/download")});

    // An installer at work: no dialog comes up.
    QFile::copy("/bin/sleep", home.path() + "/bin/veluria-installer");
    QProcess installer;
    installer.start(home.path() + "/bin/veluria-installer", {"30"});
    ASSERT_TRUE(installer.waitForStarted());
    EXPECT_EQ(offer(false, FakeVersionInfo::make("2.1")), nullptr);
    EXPECT_FALSE(delegate->updateDialogIsShowing());
    installer.kill();
    installer.waitForFinished();
}

TEST(ReleaseNotesViewTest, HostileNotesLoadNothingRunNothingAndOnlyWebLinksReachTheBrowser)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const QString origin = QStringLiteral("http://127.0.0.1:%1").arg(server.serverPort());
    RecordingDesktopServices desktop;
    ReleaseNotesView view(&desktop);
    view.setHtml(QStringLiteral("<html><head><link rel=stylesheet href='%1/style.css'>"
                                "<meta http-equiv=refresh content='0; url=%1/away'></head>"
                                "<body onload='alert(1)'><script>document.write('pwned')</script>"
                                "<img src='%1/pixel.png'><img src='file:///etc/passwd'>"
                                "<iframe src='%1/frame'></iframe><p>Notes</p>"
                                "<a href='file:///etc/passwd'>f</a><a href='javascript:alert(1)'>j</a>"
                                "<a href='veluria:download?x'>v</a><a href='https://veluria.example.org/notes'>w</a>"
                                "</body></html>")
                     .arg(origin));
    view.resize(400, 300);
    view.show();
    QTest::qWait(200);
    EXPECT_FALSE(server.hasPendingConnections());
    EXPECT_FALSE(view.toPlainText().contains("pwned"));
    EXPECT_TRUE(view.toPlainText().contains("Notes"));

    for (const char* link :
         {"file:///etc/passwd", "javascript:alert(1)", "veluria:download?x", "https://veluria.example.org/notes"})
        emit view.anchorClicked(QUrl(QString::fromLatin1(link)));
    EXPECT_EQ(desktop.openedURLs(), QList<QUrl>{QUrl("https://veluria.example.org/notes")});
    // The view stays on the notes.
    EXPECT_TRUE(view.source().isEmpty());
}

// Renders both dialogs, light and dark, to PNG files for people to look at.
TEST(UpdateDialogPictures, BothDialogsWithRealReleaseNotes)
{
    VLRFonts::loadMuli();
    QDir().mkpath(VELURIA_SCREENSHOT_DIR);
    const QString notes =
        "<h3>Veluria 2.1</h3><ul><li>Uploads resume where they stopped after a lost connection.</li>"
        "<li>Workspaces show who published last.</li><li>The file drop panel takes folders.</li>"
        "</ul><p>More on <a href='https://veluria.example.org/releases/2.1'>the release page</a>.</p>";
    RecordingDesktopServices desktop;
    const QPalette light = QApplication::palette();
    QPalette dark(QColor(53, 53, 56), QColor(40, 40, 43));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(role, QColor(230, 230, 232));
    dark.setColor(QPalette::Base, QColor(30, 30, 32));
    dark.setColor(QPalette::Link, QColor(242, 103, 35));
    for (const auto& [name, palette] : {std::pair{QString("light"), light}, {QString("dark"), dark}}) {
        QApplication::setPalette(palette);
        UpdateAlertController alert("A newer version of Veluria is available.",
                                    "Please download the latest version. (2.1)", "Install Update", "Remind Me Later",
                                    notes, &desktop);
        UpdateEULAController eula("VELURIA TERMS OF SERVICE\n\n1. Your workspaces and the files published in them "
                                  "are kept by the Veluria service.\n");
        alert.show();
        eula.show();
        QCoreApplication::processEvents();
        EXPECT_TRUE(alert.grab().save(VELURIA_SCREENSHOT_DIR "/update-alert-" + name + ".png"));
        EXPECT_TRUE(eula.grab().save(VELURIA_SCREENSHOT_DIR "/update-eula-" + name + ".png"));
    }
    QApplication::setPalette(light);
}
