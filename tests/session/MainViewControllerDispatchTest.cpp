#include "session/MainViewControllerHarness.h"

#include "fakes/FakeTransfer.h"
#include "fakes/FakeWorkspace.h"
#include "service/VLRException.h"
#include "service/VLRPurchase.h"

#include <QFile>

#include <thread>

namespace {

const vlr::Error failure{"VLRWebErrorDomain", 500, "The service went away.", {}};
const vlr::Error cancellation{"NSCocoaErrorDomain", 3072, "Cancelled.", {}};

} // namespace

TEST_F(MainViewControllerTest, AChangeFromAnotherThreadRaisesAndReachesNoPage)
{
    auto session = bind();
    std::optional<vlr::Exception> raised;
    std::thread worker([&] {
        try {
            session->setSyncingLists(true);
        } catch (const vlr::Exception& e) {
            raised = e;
        }
    });
    worker.join();
    ASSERT_TRUE(raised);
    EXPECT_EQ(raised->name(), "KVO on background thread");
    EXPECT_EQ(raised->reason(),
              "MainViewController's implementation of observeValueForKeyPath was called on a background thread.");
    EXPECT_TRUE(raised->userInfo().isEmpty());
    EXPECT_TRUE(journal.entries.isEmpty());
}

TEST_F(MainViewControllerTest, EachObservedPropertyReachesItsPages)
{
    auto session = bind();

    session->fakeUser()->setNeedsConfirmation(true);
    session->setUser(session->user());
    EXPECT_EQ(journal.entries,
              (QStringList{"preferences.updateWithUser ada@example.com", "workspaces.updateState",
                           "fileDrop.updateState", "transfers.updateState"}));
    EXPECT_TRUE(controller->workspaceViewControllerEmailNeedsConfirmation());

    journal.clear();
    session->setWorkspaces({FakeWorkspace::make("w1", "A"), FakeWorkspace::make("w2", "B")});
    session->setProjects({});
    EXPECT_EQ(journal.entries,
              (QStringList{"workspaces.updateWorkspaces 2", "fileDrop.updateWorkspaces 2",
                           "workspaces.updateWorkspaces 2", "fileDrop.updateWorkspaces 2"}));

    journal.clear();
    session->fakeUploader()->setThroughput(812.5);
    session->fakeDownloader()->setTimeRemaining(42);
    session->fakeDownloader()->setTimeRemainingInvalid(false);
    session->setTransfersPaused(true);
    EXPECT_EQ(journal.entries,
              (QStringList{"transfers.updateUploadThroughput 812.5", "transfers.updateDownloadTimeRemaining 42 false",
                           "transfers.updateDownloadTimeRemaining 42 true", "transfers.setTransfersPaused true"}));

    journal.clear();
    session->setSyncingLists(true);
    EXPECT_TRUE(controller->marketplaceViewControllerLoading());
    EXPECT_EQ(journal.entries.mid(journal.entries.size() - 4),
              (QStringList{"workspaces.updateState", "fileDrop.updateState", "transfers.updateState",
                           "marketplace.updateState"}));

    journal.clear();
    session->setPurchases({std::make_shared<VLRPurchase>()});
    EXPECT_EQ(journal.entries, (QStringList{"tabs.enableDisableTabs", "marketplace.updatePurchases 1"}));
    EXPECT_TRUE(controller->marketplaceTabShown());
    journal.clear();
    session->setPurchases({});
    EXPECT_EQ(journal.entries, (QStringList{"tabs.enableDisableTabs", "marketplace.updatePurchases 0"}));

    journal.clear();
    session->fakeUpdater()->setNeverInstalled({});
    session->fakeUpdater()->setInstallerUpdates({});
    session->setInstallers({});
    EXPECT_EQ(journal.entries,
              (QStringList{"marketplace.updateNewInstallers 0", "marketplace.updateInstallerUpdates 0",
                           "marketplace.updateInstallers 0"}));
}

TEST_F(MainViewControllerTest, AFinishedDownloadOpensOnceAndOnlyWhenItsFileIsThere)
{
    const QString path = settingsFolder.filePath("Brief.pdf");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();

    auto session = FakeUserSession::make();
    auto download = FakeTransfer::make("d1", 2, path, 1);
    session->fakeDownloader()->setTransfers({download});
    session->fakeDownloader()->setCurrentTransfer(download);
    bind(session);

    download->setFractionCompleted(0.5);
    EXPECT_EQ(journal.entries, QStringList{"transfers.setDownloads 1"});
    download->setFinished(false);
    EXPECT_TRUE(desktop->openedFiles().isEmpty());

    download->setFinished(true);
    download->setFinished(true);
    EXPECT_EQ(desktop->openedFiles(), QStringList{path});
    EXPECT_TRUE(notifications->scheduledNotifications().empty());

    // The next current download starts afresh; its file has gone away.
    auto moved = FakeTransfer::make("d2", 2, settingsFolder.filePath("gone.zip"), 1);
    session->fakeDownloader()->setCurrentTransfer(moved);
    EXPECT_FALSE(controller->openedCurrentDownload());
    moved->setFinished(true);
    EXPECT_TRUE(controller->openedCurrentDownload());
    EXPECT_EQ(desktop->openedFiles().size(), 1);
    EXPECT_TRUE(notifications->scheduledNotifications().empty());
}

TEST_F(MainViewControllerTest, AFinishedDownloadIsAnnouncedWhenAutoOpenIsOff)
{
    defaults()->setBool(false, VLRUserDefaultsKeyAutoOpenAssets);
    auto session = FakeUserSession::make();
    auto download = FakeTransfer::make("d1", 2, "/home/ada/Veluria/Alpha/Model <v2>.fbx", 1);
    session->fakeDownloader()->setCurrentTransfer(download);
    bind(session);

    download->setFinished(true);
    const auto ready = notifications->lastScheduledNotification();
    ASSERT_TRUE(ready);
    EXPECT_EQ(ready->title(), "Your download is ready!");
    EXPECT_EQ(ready->informativeText(), "Model <v2>.fbx");
    EXPECT_TRUE(ready->hasActionButton());
    EXPECT_EQ(ready->actionButtonTitle(), "Open");
    EXPECT_EQ(ready->userInfo(),
              (QVariantMap{{"VLRUserNotificationTypeKey", "VLRUserNotificationTypeDownloadCompleted"},
                           {"VLRUserNotificationFilePathKey", "/home/ada/Veluria/Alpha/Model <v2>.fbx"},
                           {"VLRUserNotificationObjectIdentifierKey", "d1"}}));
    EXPECT_TRUE(desktop->openedFiles().isEmpty());
}

TEST_F(MainViewControllerTest, DownloadFailuresAreReportedOnceAndCancellationsNever)
{
    defaults()->setBool(false, VLRUserDefaultsKeyAutoOpenAssets);
    auto session = FakeUserSession::make();
    auto download = FakeTransfer::make("d1", 2, "/tmp/Scene.blend", 1);
    session->fakeDownloader()->setCurrentTransfer(download);
    bind(session);

    download->setError(std::nullopt);
    EXPECT_FALSE(controller->openedCurrentDownload());
    EXPECT_TRUE(notifications->scheduledNotifications().empty());

    download->setError(failure);
    download->setFinished(true);
    ASSERT_EQ(notifications->scheduledNotifications().size(), 1u);
    const auto failed = notifications->lastScheduledNotification();
    EXPECT_EQ(failed->title(), "Error downloading project: \"Scene.blend\"");
    EXPECT_EQ(failed->informativeText(), "The service went away.");
    EXPECT_EQ(failed->userInfo(),
              (QVariantMap{{"VLRUserNotificationTypeKey", "VLRUserNotificationTypeTransferFailed"},
                           {"VLRUserNotificationObjectIdentifierKey", "d1"}}));

    auto cancelled = FakeTransfer::make("d2", 2, "/tmp/Other.blend", 1);
    session->fakeDownloader()->setCurrentTransfer(cancelled);
    cancelled->setError(cancellation);
    EXPECT_TRUE(controller->openedCurrentDownload());
    cancelled->setFinished(true);
    EXPECT_EQ(notifications->scheduledNotifications().size(), 1u);

    // The same code in another domain is a failure; an automatic revision
    // download reports failures but never opens or announces its end.
    auto revision = FakeTransfer::make("d3", 2, "/tmp/Rev.blend", 2);
    session->fakeDownloader()->setCurrentTransfer(revision);
    revision->setFinished(true);
    EXPECT_EQ(notifications->scheduledNotifications().size(), 1u);
    auto other = FakeTransfer::make("d4", 2, "/tmp/Code.blend", 2);
    session->fakeDownloader()->setCurrentTransfer(other);
    other->setError(vlr::Error{"VLRWebErrorDomain", 3072, "Not a cancellation.", {}});
    EXPECT_EQ(notificationTitles().last(), "Error downloading project: \"Code.blend\"");
}

TEST_F(MainViewControllerTest, UploadFailuresAreReportedAndTheNullPlaceholderIsNot)
{
    auto session = FakeUserSession::make();
    auto upload = FakeTransfer::make("u1", 1, "/tmp/Hero.png");
    session->fakeUploader()->setTransfers({upload});
    session->fakeUploader()->setCurrentTransfer(upload);
    bind(session);

    upload->setError(std::nullopt);
    upload->setError(cancellation);
    upload->setFinished(true);
    EXPECT_TRUE(notifications->scheduledNotifications().empty());
    EXPECT_EQ(journal.entries, QStringList(3, "transfers.setUploads 1"));

    upload->setError(failure);
    EXPECT_EQ(notificationTitles(), QStringList{"Error uploading project: \"Hero.png\""});
    upload->setError(failure);
    EXPECT_EQ(notificationTitles().size(), 2);
}

TEST_F(MainViewControllerTest, OnlyTheCurrentTransfersAreWatched)
{
    auto session = bind();
    auto first = FakeTransfer::make("u1", 1, "/tmp/1.png");
    auto second = FakeTransfer::make("u2", 1, "/tmp/2.png");
    session->fakeUploader()->setCurrentTransfer(first);
    EXPECT_EQ(first->observationCount(), 4);

    session->fakeUploader()->setCurrentTransfer(nullptr);
    session->fakeUploader()->setCurrentTransfer(second);
    EXPECT_EQ(first->observationCount(), 0);
    EXPECT_EQ(second->observationCount(), 4);
    EXPECT_EQ(controller->currentUpload(), second);

    // A transfer that is no longer current is not heard any more.
    journal.clear();
    first->setFractionCompleted(1);
    EXPECT_TRUE(journal.entries.isEmpty());

    auto download = FakeTransfer::make("d1", 2, "/tmp/d.zip");
    session->fakeDownloader()->setCurrentTransfer(download);
    controller->preferencesViewControllerWantsLogOut(parts.preferences);
    session->logoutHandlers.complete(std::nullopt);
    EXPECT_EQ(second->observationCount(), 0);
    EXPECT_EQ(download->observationCount(), 0);
    EXPECT_EQ(controller->currentDownload(), nullptr);

    auto later = FakeUserSession::make();
    bind(later);
    EXPECT_EQ(controller->currentDownload(), nullptr);
}
