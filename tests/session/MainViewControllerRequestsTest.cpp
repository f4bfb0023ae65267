#include "session/MainViewControllerHarness.h"

#include "fakes/FakePending.h"
#include "fakes/FakePublication.h"
#include "fakes/FakeTransfer.h"
#include "fakes/FakeWorkspace.h"
#include "support/TestFiles.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QPointer>
#include <QTextBrowser>
#include <QTextDocument>

namespace {

VLRPublicationPtr publication(const QString& userID, const QString& firstName, const QString& email,
                              const QString& project, const QString& text)
{
    auto p = std::make_shared<FakePublication>();
    p->setUserID(userID);
    p->setUserFirstName(firstName);
    p->setUserEmail(email);
    p->setProjectName(project);
    p->setText(text);
    return p;
}

} // namespace

TEST_F(MainViewControllerTest, ADownloadRequestRunsOneAtATimeAndReportsFailure)
{
    auto session = bind();
    controller->downloadUrl("veluria:one");
    controller->downloadUrl("veluria:two");
    EXPECT_EQ(session->log.count("downloadUrl"), 1);
    EXPECT_TRUE(controller->downloadingURL());

    // A sign-out does not end a request in progress: only its handler does.
    controller->cancelMfa(nullptr);
    bind(session);
    controller->downloadUrl("veluria:three");
    EXPECT_EQ(session->log.count("downloadUrl"), 1);

    session->downloadHandlers.complete(nullptr, vlr::Error{"VLRWebErrorDomain", 404, "No such revision.", {}});
    EXPECT_FALSE(controller->downloadingURL());
    const auto told = notifications->lastScheduledNotification();
    EXPECT_EQ(told->title(), "Error processing download request");
    EXPECT_EQ(told->informativeText(), "No such revision.");
    EXPECT_TRUE(told->userInfo().isEmpty());

    controller->downloadUrl("");
    EXPECT_EQ(session->log.lastArguments("downloadUrl"), QVariantList{""});
}

TEST_F(MainViewControllerTest, TheLibrarysFolderQuestionAndTheScriptsAnswer)
{
    auto session = bind();
    vlr::OptionalError error;
    EXPECT_FALSE(controller->setWorkspaceDownloadLocation(QUrl::fromLocalFile("/tmp"), &error));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->domain, "VLRAppleScriptDomain");
    EXPECT_EQ(error->code, 1);
    EXPECT_EQ(error->localizedDescription,
              "Can't set workspace location because user is not currently being asked to "
              "set the download location for any workspace.");
    EXPECT_FALSE(controller->setWorkspaceDownloadLocation(QUrl::fromLocalFile("/tmp"), nullptr));

    parts.popover->shown = true;
    QList<QUrl> answers;
    controller->getFolderURLFromUser(
        "Choose a folder", QUrl(),
        [](const QUrl& url, vlr::OptionalError* refusal) {
            if (url.path() == "/etc") {
                *refusal = vlr::Error{"VLRFrameworkErrorDomain", 5, "Not there.", {}};
                return false;
            }
            return true;
        },
        [&](const QUrl& url) { answers.append(url); });
    EXPECT_FALSE(parts.popover->shown);
    ASSERT_TRUE(controller->workspaceLocationOpenPanel());
    EXPECT_EQ(controller->workspaceLocationOpenPanel()->windowTitle(), "Choose a folder");

    EXPECT_FALSE(controller->setWorkspaceDownloadLocation(QUrl::fromLocalFile("/etc"), &error));
    EXPECT_EQ(error->localizedDescription, "Not there.");
    EXPECT_TRUE(controller->workspaceLocationOpenPanel());

    EXPECT_TRUE(controller->setWorkspaceDownloadLocation(QUrl::fromLocalFile("/srv/assets"), &error));
    EXPECT_EQ(answers, QList<QUrl>{QUrl::fromLocalFile("/srv/assets")});
    EXPECT_FALSE(controller->workspaceLocationOpenPanel());
}

TEST_F(MainViewControllerTest, TheFolderPanelAsksTheLibraryAndAReplacedQuestionEndsBoth)
{
    auto session = bind();
    QList<QUrl> first, second;
    const auto refuseEtc = [](const QUrl& url, vlr::OptionalError*) { return url.path() != "/etc"; };
    controller->getFolderURLFromUser("One", QUrl(), refuseEtc, [&](const QUrl& url) { first.append(url); });
    QPointer<QFileDialog> panel = controller->workspaceLocationOpenPanel();
    EXPECT_TRUE(panel->testOption(QFileDialog::ReadOnly));
    panel->setDirectory("/etc");
    QMetaObject::invokeMethod(panel, "accept");
    EXPECT_TRUE(panel->isVisible());
    EXPECT_TRUE(first.isEmpty());

    // A second question while the first panel is open: the first panel's end
    // reads the second panel, answers the first question, and ends both.
    controller->getFolderURLFromUser("Two", QUrl(), refuseEtc, [&](const QUrl& url) { second.append(url); });
    controller->workspaceLocationOpenPanel()->setDirectory(QDir::tempPath());
    panel->setDirectory(QDir::rootPath());
    QMetaObject::invokeMethod(panel, "accept");
    EXPECT_EQ(first, QList<QUrl>{QUrl::fromLocalFile(QDir::tempPath())});
    EXPECT_TRUE(second.isEmpty());
    EXPECT_FALSE(controller->workspaceLocationOpenPanel());
}

TEST_F(MainViewControllerTest, RetriesPausesClearsAndMovesReachTheQueues)
{
    auto session = bind();
    auto upload = FakeTransfer::make("u1", 1, "/tmp/u.png");
    controller->transfersViewControllerRestartedUpload(parts.transfers, upload);
    EXPECT_EQ(session->fakeUploader()->log.lastArguments("restartTransfer"), QVariantList{"u1"});
    EXPECT_TRUE(notifications->scheduledNotifications().empty());

    session->fakeDownloader()->restartError = vlr::Error{"VLRWebErrorDomain", 410, "The file is gone.", {}};
    controller->transfersViewControllerRestartedDownload(parts.transfers, FakeTransfer::make("d1", 2, "/tmp/d"));
    const auto told = notifications->lastScheduledNotification();
    EXPECT_EQ(told->title(), "Error retrying download");
    EXPECT_EQ(told->userInfo(), (QVariantMap{{"VLRUserNotificationTypeKey", "VLRUserNotificationTypeTransferFailed"}}));

    controller->transfersViewControllerDidPauseTransfers(parts.transfers, true);
    controller->transfersViewControllerDidClearCompleted(parts.transfers);
    controller->transfersViewControllerMovedDownloads(parts.transfers, {upload}, nullptr);
    EXPECT_EQ(session->log.lastArguments("pauseAllTransfers"), QVariantList{true});
    EXPECT_EQ(session->log.count("clearCompletedTransfers"), 1);
    EXPECT_EQ(session->fakeDownloader()->lastMoved, VLRTransferList{upload});
}

TEST_F(MainViewControllerTest, PublishingChecksEachFileAndStopsAtTheFirstMissingOne)
{
    auto session = bind();
    QDir folder(settingsFolder.path());
    QFile(folder.filePath("one.png")).open(QIODevice::WriteOnly);
    folder.mkdir("Tool.app");
    folder.mkdir("Plain");
    const QStringList paths = {folder.filePath("one.png"), folder.filePath("missing.png"),
                               folder.filePath("three.png")};
    auto workspace = FakeWorkspace::make("w1", "Alpha");

    QList<vlr::OptionalError> results;
    const auto record = [&](const vlr::OptionalError& e) { results.append(e); };
    controller->fileDropViewControllerUploadedFiles(parts.fileDrop, paths, workspace, "v2", true, record);
    EXPECT_EQ(session->log.count("uploadAndPublishNewRevision"), 1);
    ASSERT_EQ(results.size(), 1);
    ASSERT_TRUE(results[0]);
    EXPECT_EQ(results[0]->domain, "VLRFrameworkErrorDomain");
    EXPECT_EQ(results[0]->code, 23);
    EXPECT_EQ(results[0]->userInfo.value("NSLocalizedDescription"), "File not found");
    EXPECT_EQ(results[0]->userInfo.value("NSLocalizedFailureReason"), "Unable to locate the file: missing.png");
    EXPECT_NE(parts.tabs->selected, 4);

    // A package goes as a file, a folder as a folder, and the library's
    // publish argument is that folder flag, not the request's; then the
    // uploads list.
    EXPECT_EQ(session->log.lastArguments("uploadAndPublishNewRevision").value(2), false);
    controller->fileDropViewControllerUploadedFiles(parts.fileDrop,
                                                    QStringList{folder.filePath("Tool.app"), folder.filePath("Plain")},
                                                    workspace, "v3", false, record);
    const QList<FakeCall> calls = session->log.calls();
    EXPECT_FALSE(calls[calls.size() - 2].arguments[0].toUrl().path().endsWith('/'));
    EXPECT_EQ(calls[calls.size() - 2].arguments.value(2), false);
    EXPECT_TRUE(calls.last().arguments[0].toUrl().path().endsWith('/'));
    EXPECT_EQ(calls.last().arguments.mid(1), (QVariantList{"w1", true, "v3"}));
    EXPECT_EQ(parts.tabs->selected, 4);
    EXPECT_EQ(journal.entries.last(), "transfers.showTab 1 ");
    EXPECT_EQ(results.size(), 2);
    EXPECT_FALSE(results[1]);

    // A comment alone; no workspace at all.
    controller->fileDropViewControllerUploadedFiles(parts.fileDrop, std::nullopt, workspace, "hello", true, record);
    EXPECT_EQ(session->log.lastArguments("publishText"), (QVariantList{"hello", "w1"}));
    session->publishTextHandlers.complete(QString(), vlr::Error{"x", 1, "no", {}});
    EXPECT_EQ(results.last()->localizedDescription, "no");
    controller->fileDropViewControllerUploadedFiles(parts.fileDrop, paths, nullptr, "x", true, record);
    EXPECT_EQ(results.size(), 3);

    // Signed out meanwhile: a missing folder is still named, by its name.
    controller->cancelMfa(nullptr);
    controller->fileDropViewControllerUploadedFiles(parts.fileDrop, QStringList{folder.filePath("Gone") + "/"},
                                                    workspace, "x", true, record);
    ASSERT_EQ(results.size(), 4);
    EXPECT_EQ(results[3]->userInfo.value("NSLocalizedFailureReason"), "Unable to locate the file: Gone");
}

TEST_F(MainViewControllerTest, ActivatedNotificationsLeadToTheirObject)
{
    auto session = bind();
    auto workspace = FakeWorkspace::make("w1", "Alpha");
    session->setWorkspaces({workspace});

    const auto newMessage = fakes.notifications->vlr_scheduledNotificationWithTitle(
        "New message in Alpha", "x", "w1", "VLRUserNotificationTypeNewPublication");
    notifications->activate(newMessage, VLRUserNotificationActivationTypeContentsClicked);
    EXPECT_EQ(workspace->log.lastArguments("openInBrowser"), QVariantList{false});

    const auto card = fakes.notifications->vlr_scheduledNotificationWithTitle(
        "Your credit card has expired!", "Click here to update it.", "https://pay.example.com/manage",
        "VLRUserNotificationTypeCCExpired");
    const auto hostile = fakes.notifications->vlr_scheduledNotificationWithTitle(
        "Your credit card has expired!", "x", "file:///etc/passwd", "VLRUserNotificationTypeCCExpired");
    notifications->activate(card, VLRUserNotificationActivationTypeContentsClicked);
    notifications->activate(hostile, VLRUserNotificationActivationTypeContentsClicked);
    EXPECT_EQ(desktop->openedURLs(), QList<QUrl>{QUrl("https://pay.example.com/manage")});

    const auto ready = fakes.notifications->vlr_scheduledNotificationWithTitle(
        "Your download is ready!", "gone.zip", "Open", "d1", QUrl::fromLocalFile("/nonexistent/gone.zip"),
        "VLRUserNotificationTypeDownloadCompleted");
    notifications->activate(ready, VLRUserNotificationActivationTypeActionButtonClicked);
    EXPECT_TRUE(desktop->openedFiles().isEmpty());

    const auto update = fakes.notifications->vlr_scheduledNotificationWithTitle(
        "Update Available", "x", "Update", "i1", QUrl(), "VLRUserNotificationTypeUpdateAvailable");
    notifications->activate(update, VLRUserNotificationActivationTypeActionButtonClicked);
    EXPECT_TRUE(journal.entries.contains("marketplace.downloadAndInstallInstallerWithID i1"));
    notifications->activate(update, VLRUserNotificationActivationTypeContentsClicked);
    EXPECT_EQ(parts.tabs->selected, 3);
    EXPECT_TRUE(journal.entries.contains("marketplace.showUpdatesTab"));
    EXPECT_TRUE(notifications->wouldPresent(update));
}

TEST_F(MainViewControllerTest, NewPublicationsOfOthersAreAnnouncedOneEach)
{
    auto session = bind();
    auto workspace = FakeWorkspace::make("w1", "Alpha");
    controller->workspace(workspace,
                          {publication("user-1", "Ada", "ada@example.com", "Mine", "skip me"),
                           publication("u2", "Grace", "grace@example.com", "Deck", "Looks good"),
                           publication("u3", "", "lin@example.com", "Deck", ""),
                           publication("u4", "Bo", "", "", "Just a note"),
                           publication("u5", "", QString(), "Deck", "nobody"), publication("u6", "Cy", "", "", "")});
    QStringList texts;
    for (const auto& n : notifications->scheduledNotifications()) {
        texts.append(n->informativeText());
        EXPECT_EQ(n->title(), "New message in Alpha");
        EXPECT_EQ(n->userInfo().value("VLRUserNotificationObjectIdentifierKey"), "w1");
    }
    EXPECT_EQ(texts,
              (QStringList{"Grace uploaded Deck and commented: Looks good", "lin@example.com uploaded Deck.",
                           "Bo: Just a note", "Cy: "}));
}

TEST_F(MainViewControllerTest, HelpOnThisComputerIsShownInTheClientAndWebHelpInTheBrowser)
{
    QTemporaryDir folder;
    const QString page = folder.filePath("help.html");
    writeFile(page,
              "<html><head><title>Veluria help</title></head><body><p>Ask <code>veluria-admin</code>.</p>"
              "<img src=\"file:///etc/passwd\"></body></html>");

    controller->preferencesViewControllerWantsHelp(nullptr);
    service().helpURLHandlers.complete(QUrl::fromLocalFile(page), std::nullopt);
    EXPECT_EQ(desktop->openedURLs(), QList<QUrl>());
    const auto windows = QApplication::topLevelWidgets();
    const auto shown = std::find_if(windows.cbegin(), windows.cend(),
                                    [](QWidget* w) { return w->isVisible() && w->windowTitle() == "Veluria help"; });
    ASSERT_NE(shown, windows.cend());
    auto* browser = qobject_cast<QTextBrowser*>(*shown);
    ASSERT_TRUE(browser);
    EXPECT_TRUE(browser->toPlainText().contains("Ask veluria-admin."));
    EXPECT_TRUE(browser->grab().save(VELURIA_SCREENSHOT_DIR "/help-page.png"));
    // Nothing on the disk is read for the page; of its links, only web ones
    // leave the client.
    EXPECT_FALSE(browser->loadResource(QTextDocument::ImageResource, QUrl("file:///etc/passwd")).isValid());
    emit browser->anchorClicked(QUrl("file:///usr/bin/xterm"));
    emit browser->anchorClicked(QUrl("https://veluria.example/faq"));
    // A service with a web site has its help in the browser.
    controller->preferencesViewControllerWantsHelp(nullptr);
    service().helpURLHandlers.complete(QUrl("https://veluria.example/help"), std::nullopt);
    EXPECT_EQ(desktop->openedURLs(),
              QList<QUrl>({QUrl("https://veluria.example/faq"), QUrl("https://veluria.example/help")}));
}
