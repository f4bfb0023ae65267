// The transfers tab driven by the main controller against the test double of
// the service: what the user does on the page reaches the library's queues,
// and the library's answer comes back as new arrays.

#include "transfers/TransfersTesting.h"

#include "fakes/FakeClientServices.h"
#include "fakes/FakeUserSession.h"
#include "pages/RecordingPages.h"
#include "session/MainViewController.h"
#include "transfers/TransfersViewController.h"
#include "widgets/StatusItemImageView.h"

#include <QMimeData>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class TransfersThroughMainViewControllerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        MainViewControllerParts taken = parts.take();
        auto transfers = std::make_unique<TransfersViewController>(fakes.services());
        page = transfers.get();
        taken.transfersViewController = std::move(transfers);
        application.statusView = &statusView;
        controller = std::make_unique<MainViewController>(std::move(taken), &application, fakes.services());
        controller->loadView();
        controller->didLoginWithSession(session, false);
    }

    // Drags the rows of the source table and drops them at the row of the
    // target table, as the table's own drag and drop does.
    static bool dragAndDrop(TransfersTableView* source, const QList<int>& rows, TransfersTableView* target, int row)
    {
        QModelIndexList indexes;
        for (int r : rows)
            indexes.append(source->model()->index(r, 0));
        std::unique_ptr<QMimeData> data(source->model()->mimeData(indexes));
        return target->model()->dropMimeData(data.get(), Qt::MoveAction, row, 0, QModelIndex());
    }

    static bool drop(TransfersTableView* target, QMimeData* data, int row)
    {
        return target->model()->canDropMimeData(data, Qt::MoveAction, row, 0, QModelIndex())
            && target->model()->dropMimeData(data, Qt::MoveAction, row, 0, QModelIndex());
    }

    QTemporaryDir folder;
    FakeClientServices fakes{folder.path()};
    PageJournal journal;
    RecordingParts parts{&journal};
    RecordingApplication application{&journal};
    StatusItemImageView statusView{QRect(0, 0, 24, 24), true};
    std::shared_ptr<FakeUserSession> session = FakeUserSession::make();
    TransfersViewController* page = nullptr;
    std::unique_ptr<MainViewController> controller;
};

} // namespace

TEST_F(TransfersThroughMainViewControllerTest, ReorderByDragReachesTheQueueAndComesBackAsANewOrder)
{
    auto a = makeTransfer("a", TransferState::Running);
    auto b = makeTransfer("b", TransferState::Queued);
    auto c = makeTransfer("c", TransferState::Queued);
    session->fakeUploader()->setTransfers({a, b, c});
    ASSERT_EQ(page->uploadsRows().size(), 3);
    const auto rowOfC = page->uploadsRows().at(2);

    EXPECT_TRUE(dragAndDrop(page->uploadsTableView(), {2}, page->uploadsTableView(), 1));
    EXPECT_EQ(session->fakeUploader()->lastMoved, VLRTransferList({c}));
    EXPECT_EQ(session->fakeUploader()->lastReference, VLRTransferReportingPtr(b));
    // The table waits for the library's new order, and keeps its rows.
    EXPECT_EQ(page->uploadsRows().at(2), rowOfC);
    session->fakeUploader()->setTransfers({a, c, b});
    EXPECT_EQ(page->uploadsRows().at(1), rowOfC);

    // Behind the last row there is no reference.
    EXPECT_TRUE(dragAndDrop(page->uploadsTableView(), {0}, page->uploadsTableView(), 3));
    EXPECT_EQ(session->fakeUploader()->lastReference, nullptr);

    // Row numbers from the other table are read against this one.
    auto d = makeTransfer("d", TransferState::Queued, 2);
    session->fakeDownloader()->setTransfers({d});
    EXPECT_TRUE(dragAndDrop(page->uploadsTableView(), {0}, page->downloadsTableView(), 0));
    EXPECT_EQ(session->fakeDownloader()->lastMoved, VLRTransferList({d}));
    EXPECT_EQ(session->fakeDownloader()->lastReference, VLRTransferReportingPtr(d));
}

TEST_F(TransfersThroughMainViewControllerTest, ForeignDropsAndStrayRowNumbersMoveNothing)
{
    session->fakeUploader()->setTransfers({makeTransfer("a", TransferState::Queued)});
    QMimeData text;
    text.setText("rm -rf ~");
    EXPECT_FALSE(drop(page->uploadsTableView(), &text, 0));
    QMimeData garbage;
    garbage.setData(TransfersTableView::DraggedType, "not a list of rows");
    EXPECT_FALSE(drop(page->uploadsTableView(), &garbage, 0));
    QMimeData outOfRange;
    page->tableViewWriteRowsWithIndexesToPasteboard(page->uploadsTableView(), {7, -1}, &outOfRange);
    EXPECT_FALSE(drop(page->uploadsTableView(), &outOfRange, 0));
    // The completed list takes no drops at all.
    QMimeData rows;
    page->tableViewWriteRowsWithIndexesToPasteboard(page->uploadsTableView(), {0}, &rows);
    EXPECT_FALSE(drop(page->completedTableView(), &rows, 0));
    EXPECT_EQ(session->fakeUploader()->log.count("moveTransfersAbove"), 0);
    EXPECT_EQ(page->uploadsRows().size(), 1);
}

TEST_F(TransfersThroughMainViewControllerTest, PauseAllRetryAndClearReachTheSession)
{
    auto failed = makeTransfer("f", TransferState::Failed, 2);
    session->fakeDownloader()->setTransfers({failed});
    page->downloadsRows().first()->retryTransfer();
    EXPECT_EQ(session->fakeDownloader()->log.lastArguments("restartTransfer"), QVariantList({"f"}));

    page->downloadsControlPanelViewController()->pauseResumeAll();
    EXPECT_EQ(session->log.lastArguments("pauseAllTransfers"), QVariantList({true}));
    session->setTransfersPaused(true);
    EXPECT_TRUE(page->downloadsControlPanelViewController()->transfersPaused());
    page->downloadsControlPanelViewController()->pauseResumeAll();
    EXPECT_EQ(session->log.lastArguments("pauseAllTransfers"), QVariantList({false}));

    page->completedControlPanelViewController()->clearCompleted();
    EXPECT_EQ(session->log.count("clearCompletedTransfers"), 1);
}
