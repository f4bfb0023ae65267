#include "session/MainViewControllerHarness.h"

#include "fakes/FakeTransfer.h"
#include "fakes/FakeWorkspace.h"

TEST_F(MainViewControllerTest, TheStatusItemShowsSignedOutIdleAndBusy)
{
    EXPECT_EQ(statusView->viewState(), 1);
    auto session = bind();
    EXPECT_EQ(statusView->viewState(), 2);

    // Loading lists is no activity; syncing workspaces is.
    session->setSyncingLists(true);
    EXPECT_EQ(statusView->viewState(), 2);
    session->setSyncingWorkspaces(true);
    EXPECT_EQ(statusView->viewState(), 3);
    session->setSyncingWorkspaces(false);
    EXPECT_EQ(statusView->viewState(), 2);

    // Installer work is seen at the next refresh of the updater.
    session->fakeUpdater()->setDownloadOperations({std::make_shared<VLRObject>()});
    session->fakeUpdater()->overallOperationsDidChange();
    EXPECT_EQ(statusView->viewState(), 3);
    session->fakeUpdater()->setDownloadOperations({});
    session->fakeUpdater()->overallOperationsDidChange();
    EXPECT_EQ(statusView->viewState(), 2);

    // Queued transfers count for the badge; only current ones make it busy.
    auto download = FakeTransfer::make("d1", 2, "/tmp/d.zip");
    session->fakeDownloader()->setTransfers({download, FakeTransfer::make("d2", 2, "/tmp/e.zip")});
    EXPECT_EQ(statusView->viewState(), 2);
    EXPECT_EQ(parts.tabs->badges.value(4), qMakePair(qint64(2), false));
    session->fakeDownloader()->setCurrentTransfer(download);
    EXPECT_EQ(statusView->viewState(), 3);
    EXPECT_FALSE(parts.tabs->activeUploads);
    EXPECT_TRUE(parts.tabs->activeDownloads);

    // Completed transfers leave the badge alone.
    session->setCompletedTransfers({FakeTransfer::make("c1", 1, "/tmp/c.png")});
    EXPECT_EQ(parts.tabs->badges.value(4), qMakePair(qint64(2), false));
}

TEST_F(MainViewControllerTest, ThePopoverOpensAndClosesByEveryPath)
{
    StatusItemImageView other(QRect(40, 0, 24, 24), true);
    controller->statusItemImageViewDidReceiveMouseDownEvent(&other);
    EXPECT_TRUE(parts.popover->shown);
    EXPECT_EQ(parts.popover->lastRect, QRect(40, 0, 24, 24));
    EXPECT_EQ(controller->statusItemImageView(), &other);
    controller->statusItemImageViewDidReceiveMouseDownEvent(&other);
    EXPECT_FALSE(parts.popover->shown);

    // A drag opens but never closes; a cell click closes but never opens.
    controller->statusItemImageViewDidReceiveDragEvent(statusView);
    controller->statusItemImageViewDidReceiveDragEvent(statusView);
    EXPECT_TRUE(parts.popover->shown);
    controller->workspaceViewControllerHadCellClicked(parts.workspaces);
    controller->workspaceViewControllerHadCellClicked(parts.workspaces);
    EXPECT_FALSE(parts.popover->shown);

    // The file drop's two toggles around its panel keep no count.
    controller->fileDropViewControllerWantsPopUpToggled(parts.fileDrop);
    EXPECT_TRUE(parts.popover->shown);
    controller->fileDropViewControllerWantsPopUpToggled(parts.fileDrop);
    EXPECT_FALSE(parts.popover->shown);

    // Without the status item the popover opens against an empty rectangle.
    delete statusView;
    statusView = nullptr;
    controller->statusItemImageViewDidReceiveMouseDownEvent(nullptr);
    EXPECT_EQ(parts.popover->lastRect, QRect());
}

TEST_F(MainViewControllerTest, DragsAndDropsEndOnTheFileDropUnlessWorkspacesShow)
{
    bind();
    parts.tabs->selectTab(2);
    controller->statusItemImageViewDidReceiveDragEvent(statusView);
    EXPECT_EQ(parts.tabs->selected, 2);
    EXPECT_TRUE(parts.popover->shown);

    controller->statusItemImageViewDidReceiveFiles(statusView, {"/tmp/a.png", "/tmp/b.png"});
    EXPECT_EQ(parts.fileDrop->files, (QStringList{"/tmp/a.png", "/tmp/b.png"}));
    EXPECT_EQ(parts.tabs->selected, 1);
    EXPECT_EQ(controller->tabView()->currentIndex(), 1);

    parts.tabs->selectTab(4);
    controller->viewDidReceiveDraggingEvent(nullptr);
    EXPECT_EQ(parts.tabs->selected, 1);

    auto workspace = FakeWorkspace::make("w9", "Nine");
    controller->workspaceViewControllerDidReceiveFiles(parts.workspaces, {"/tmp/c.png"}, workspace);
    EXPECT_EQ(journal.withPrefix("fileDrop.").mid(journal.withPrefix("fileDrop.").size() - 2),
              (QStringList{"fileDrop.selectWorkspace w9", "fileDrop.updateFiles /tmp/c.png"}));
    controller->tabSelectorViewControllerDidReceiveDroppedFiles(parts.tabs, {"/tmp/d.png"});
    EXPECT_EQ(parts.fileDrop->files, QStringList{"/tmp/d.png"});
}

TEST_F(MainViewControllerTest, TabsAreGatedWithoutASession)
{
    parts.tabs->selectTab(2);
    EXPECT_EQ(parts.tabs->selected, 0);
    EXPECT_EQ(controller->tabView()->currentIndex(), 0);
    parts.tabs->selectTab(5);
    EXPECT_EQ(controller->tabView()->currentIndex(), 5);
    parts.tabs->selectTab(1);
    EXPECT_EQ(controller->tabView()->currentIndex(), 0);

    // Marketplace and settings only once they have been made available.
    EXPECT_FALSE(controller->tabSelectorViewControllerTabSupported(parts.tabs, 3));
    EXPECT_FALSE(controller->tabSelectorViewControllerTabSupported(parts.tabs, 5));
    EXPECT_TRUE(controller->tabSelectorViewControllerTabSupported(parts.tabs, 4));
    auto session = FakeUserSession::make();
    session->setHasPurchases(true);
    bind(session);
    EXPECT_TRUE(controller->tabSelectorViewControllerTabSupported(parts.tabs, 3));
    EXPECT_TRUE(controller->tabSelectorViewControllerTabSupported(parts.tabs, 5));
    parts.tabs->selectTab(3);

    // Signing out closes the marketplace tab but leaves its page showing, and
    // keeps the settings tab.
    controller->preferencesViewControllerWantsLogOut(parts.preferences);
    session->logoutHandlers.complete(std::nullopt);
    EXPECT_FALSE(controller->tabSelectorViewControllerTabSupported(parts.tabs, 3));
    EXPECT_TRUE(controller->tabSelectorViewControllerTabSupported(parts.tabs, 5));
    EXPECT_EQ(journal.count("tabs.enableDisableTabs"), 1);

    controller->marketplaceViewControllerDidChangeUpdateCountTo(nullptr, 7, true);
    EXPECT_EQ(parts.tabs->badges.value(3), qMakePair(qint64(7), true));
}

TEST_F(MainViewControllerTest, ScriptsAndNotificationsOpenThePopoverOnTheirTab)
{
    bind();
    controller->showFileDropView();
    EXPECT_TRUE(parts.popover->shown);
    EXPECT_EQ(parts.tabs->selected, 1);
    controller->showFileDropView();
    EXPECT_TRUE(parts.popover->shown);

    parts.popover->shown = false;
    const auto failed = fakes.notifications->vlr_scheduledNotificationWithTitle(
        "Error retrying upload", "no", QString(), "VLRUserNotificationTypeTransferFailed");
    notifications->activate(failed, VLRUserNotificationActivationTypeActionButtonClicked);
    EXPECT_FALSE(parts.popover->shown);
    notifications->activate(failed, VLRUserNotificationActivationTypeContentsClicked);
    EXPECT_TRUE(parts.popover->shown);
    EXPECT_EQ(parts.tabs->selected, 4);
    EXPECT_EQ(journal.entries.last(), "transfers.showTab 3 ");
}
