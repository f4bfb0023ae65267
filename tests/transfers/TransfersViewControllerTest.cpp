#include "transfers/TransfersTesting.h"

#include "fakes/FakeClientServices.h"
#include "service/VLRException.h"
#include "transfers/TransfersViewController.h"
#include "transfers/TransfersViewControllerDelegate.h"

#include <QCoreApplication>
#include <QDir>
#include <QMouseEvent>
#include <QTemporaryDir>

#include <functional>

#include <gmock/gmock.h>

namespace {

struct MockTransfersDelegate : TransfersViewControllerDelegate
{
    MOCK_METHOD(void, transfersViewControllerDidClearCompleted, (TransfersPage*), (override));
    MOCK_METHOD(void, transfersViewControllerDidPauseTransfers, (TransfersPage*, bool), (override));
    MOCK_METHOD(void, transfersViewControllerRestartedUpload, (TransfersPage*, const VLRTransferReportingPtr&),
                (override));
    MOCK_METHOD(void, transfersViewControllerRestartedDownload, (TransfersPage*, const VLRTransferReportingPtr&),
                (override));
    MOCK_METHOD(bool, transfersViewControllerEmailNeedsConfirmation, (), (override));
    MOCK_METHOD(bool, transfersViewControllerLoading, (), (override));
    MOCK_METHOD(void, transfersViewControllerMovedUploads,
                (TransfersPage*, const VLRTransferList&, const VLRTransferReportingPtr&), (override));
    MOCK_METHOD(void, transfersViewControllerMovedDownloads,
                (TransfersPage*, const VLRTransferList&, const VLRTransferReportingPtr&), (override));
};

class TransfersViewControllerTest : public ::testing::Test
{
protected:
    void SetUp() override { page.setDelegate(&delegate); }

    static VLRTransferList transfers(std::initializer_list<const char*> identifiers,
                                     TransferState state = TransferState::Queued)
    {
        VLRTransferList list;
        for (const char* identifier : identifiers)
            list.append(makeTransfer(identifier, state));
        return list;
    }

    static QList<TransferRow*> rows(const TransfersViewController::TransferRows& shared)
    {
        QList<TransferRow*> raw;
        for (const auto& row : shared)
            raw.append(row.get());
        return raw;
    }

    QTemporaryDir folder;
    FakeClientServices fakes{folder.path()};
    testing::NiceMock<MockTransfersDelegate> delegate;
    TransfersViewController page{fakes.services()};
};

} // namespace

TEST_F(TransfersViewControllerTest, KnownTransfersKeepTheirRowsAcrossUpdatesAndLists)
{
    // A missing record is shown as an empty row, like one without identifier.
    const VLRTransferList uploads = transfers({"a", "b", ""}) << nullptr;
    page.setUploads(uploads);
    const QList<TransferRow*> first = rows(page.uploadsRows());
    page.setUploads(uploads);
    const QList<TransferRow*> second = rows(page.uploadsRows());
    EXPECT_EQ(second.mid(0, 2), first.mid(0, 2));
    // A record without an identifier gets a fresh row each time.
    EXPECT_NE(second.at(2), first.at(2));
    EXPECT_EQ(page.transferRowCacheCount(), 2);

    // A vanished transfer's row waits in the cache and comes back as it was.
    page.uploadsRows().first()->setSelected(true);
    page.setUploads({});
    page.setUploads(uploads.mid(0, 1));
    EXPECT_EQ(page.uploadsRows().first().get(), first.at(0));
    EXPECT_TRUE(page.uploadsRows().first()->selected());

    // Finished, it moves to completed with its row: cancel on, selection off.
    page.setCompleted(uploads.mid(0, 1));
    TransferRow* moved = page.completedRows().first().get();
    EXPECT_EQ(moved, first.at(0));
    EXPECT_TRUE(moved->showCancelButton());
    EXPECT_FALSE(moved->selected());
    // Its cancel still answers with the uploads table, so it stays cached.
    page.transferRowDidCancel(moved);
    EXPECT_EQ(std::static_pointer_cast<FakeTransfer>(uploads.at(0))->log.count("cancel"), 1);
    EXPECT_EQ(page.transferRowCacheCount(), 2);

    // Clearing the completed list forgets its rows.
    page.setCompleted(uploads);
    EXPECT_CALL(delegate, transfersViewControllerDidClearCompleted(&page));
    page.transfersControlPanelDidClearAll(page.uploadsControlPanelViewController());
    EXPECT_EQ(page.transferRowCacheCount(), 2);
    page.transfersControlPanelDidClearAll(page.completedControlPanelViewController());
    EXPECT_EQ(page.transferRowCacheCount(), 0);
    // Rows made for the completed table leave the cache on cancel.
    page.setCompleted(transfers({"c"}, TransferState::Finished));
    page.transferRowDidCancel(page.completedRows().first().get());
    EXPECT_EQ(page.transferRowCacheCount(), 0);
}

TEST_F(TransfersViewControllerTest, SelectionStaysOnTheRowNumberAndShowTabSelectsByIdentifier)
{
    VLRTransferList downloads = transfers({"a", "b", "c"});
    page.setDownloads(downloads);
    TransfersTableView* table = page.downloadsTableView();
    ASSERT_TRUE(page.tableViewShouldSelectRow(table, 1));
    table->selectRowIndexes({1}, false);
    EXPECT_TRUE(page.downloadsRows().at(1)->selected());

    std::swap(downloads[0], downloads[1]);
    page.setDownloads(downloads);
    EXPECT_EQ(table->selectedRowIndexes(), QList<int>({1}));
    // The row keeps its own look; it does not follow the highlight.
    EXPECT_TRUE(page.downloadsRows().at(0)->selected());
    EXPECT_FALSE(page.downloadsRows().at(1)->selected());

    page.showTab(TransfersPage::DownloadsList, "c");
    EXPECT_EQ(page.tabView()->currentIndex(), 1);
    EXPECT_EQ(table->selectedRowIndexes(), QList<int>({2}));
    EXPECT_FALSE(page.downloadsRows().at(0)->selected());
    EXPECT_TRUE(page.downloadsRows().at(2)->selected());
    page.showTab(TransfersPage::DownloadsList, "none");
    EXPECT_TRUE(table->selectedRowIndexes().isEmpty());
    EXPECT_FALSE(page.downloadsRows().at(2)->selected());
    // Any other number searches the completed list.
    page.setCompleted(transfers({"c"}, TransferState::Finished));
    page.showTab(7, "c");
    EXPECT_EQ(page.completedTableView()->selectedRowIndexes(), QList<int>({0}));
    page.showTab(TransfersPage::CompletedList, QString());
    EXPECT_EQ(page.tabView()->currentIndex(), 2);
}

TEST_F(TransfersViewControllerTest, PanelsBadgesPauseAllAndPageState)
{
    page.setUploads(transfers({"a", "b"}, TransferState::Running));
    EXPECT_EQ(page.tabSelectorViewController()->uploadsButton()->badgeValue(), 2);
    page.setCompleted(transfers({"1", "2", "3", "4"}, TransferState::Finished));
    EXPECT_TRUE(page.completedControlPanelView()->isHidden());
    page.setCompleted(transfers({"1", "2", "3", "4", "5"}, TransferState::Finished));
    EXPECT_FALSE(page.completedControlPanelView()->isHidden());

    page.setTransfersPaused(true);
    EXPECT_FALSE(page.uploadsRows().first()->showPauseResumeButton());
    EXPECT_TRUE(page.uploadsControlPanelViewController()->transfersPaused());
    EXPECT_FALSE(page.completedControlPanelViewController()->transfersPaused());
    // Rows that arrive later were not told.
    page.setUploads(transfers({"a", "b", "new"}, TransferState::Running));
    EXPECT_TRUE(page.uploadsRows().at(2)->showPauseResumeButton());
    EXPECT_CALL(delegate, transfersViewControllerDidPauseTransfers(&page, false));
    page.uploadsControlPanelViewController()->pauseResumeAll();

    page.updateUploadTimeRemaining(125.9, true);
    page.updateUploadThroughput(1999);
    EXPECT_EQ(page.uploadsControlPanelViewController()->speedTimeLeftLabel()->text(), "1 Mbps | 2 Minutes");
    page.updateUploadTimeRemaining(125.9, false);
    EXPECT_EQ(page.uploadsControlPanelViewController()->secondsLeft(), 0u);
    EXPECT_THROW(page.uploadsControlPanelViewController()->showClearCompletedButton(true), vlr::Exception);

    // Needs confirmation is asked first and wins; only changes touch views.
    EXPECT_CALL(delegate, transfersViewControllerEmailNeedsConfirmation()).WillOnce(testing::Return(true));
    EXPECT_CALL(delegate, transfersViewControllerLoading()).Times(0);
    page.updateState();
    EXPECT_FALSE(page.emailConfirmView()->isHidden());
    EXPECT_FALSE(page.resendConfirmButton()->isHidden());
    page.resendButtonClicked();
    ASSERT_EQ(fakes.desktop->openedURLs().size(), 1);
    EXPECT_TRUE(fakes.desktop->openedURLs().first().toString().endsWith("/users/resend_email_confirm"));
}

TEST_F(TransfersViewControllerTest, RetryGoesByTypeAndDoubleClickOpensOnlyAnExistingFolder)
{
    auto upload = makeTransfer("u", TransferState::Failed, VLRTransferReporting::UploadType);
    auto download = makeTransfer("d", TransferState::Failed, 2);
    EXPECT_CALL(delegate, transfersViewControllerRestartedUpload(&page, VLRTransferReportingPtr(upload)));
    EXPECT_CALL(delegate, transfersViewControllerRestartedDownload(&page, VLRTransferReportingPtr(download)));
    page.setUploads({upload, download});
    for (const auto& row : page.uploadsRows())
        row->retryTransfer();

    QTemporaryDir files;
    auto present = makeTransfer("p", TransferState::Finished);
    present->setFileURL(QUrl::fromLocalFile(files.filePath("model.blend")));
    auto vanished = makeTransfer("v", TransferState::Finished);
    vanished->setFileURL(QUrl::fromLocalFile(files.filePath("gone/model.blend")));
    page.setCompleted({present, vanished});
    TransfersTableView* table = page.completedTableView();
    table->resize(300, 200);
    const auto doubleClick = [table](int row) {
        const QPoint point = row < 0 ? QPoint(5, 190) : table->visualRect(table->model()->index(row, 2)).center();
        QMouseEvent event(QEvent::MouseButtonDblClick, point, table->viewport()->mapToGlobal(point), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(table->viewport(), &event);
    };
    doubleClick(0);
    doubleClick(1);
    doubleClick(-1);
    ASSERT_EQ(fakes.desktop->openedURLs().size(), 1);
    EXPECT_EQ(QDir(fakes.desktop->openedURLs().first().toLocalFile()), QDir(files.path()));
}

TEST_F(TransfersViewControllerTest, ARowThatTheLibraryRemovesWhileCancellingIsNotTouchedAgain)
{
    // The library answers a cancel at once with a list without the transfer.
    struct AnsweringTransfer : FakeTransfer
    {
        std::function<void()> answer;
        void cancel() override
        {
            FakeTransfer::cancel();
            answer();
        }
    };
    auto transfer = std::make_shared<AnsweringTransfer>();
    transfer->setIdentifier("c");
    transfer->setFinished(true);
    transfer->answer = [this] {
        page.transfersControlPanelDidClearAll(page.completedControlPanelViewController());
        page.setCompleted({});
    };
    page.setCompleted({transfer});
    page.completedRows().first()->cancelTransfer();
    EXPECT_EQ(transfer->log.count("cancel"), 1);
    EXPECT_TRUE(page.completedRows().isEmpty());
}
