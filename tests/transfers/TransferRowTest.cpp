#include "transfers/TransfersTesting.h"

#include "service/VLRException.h"
#include "transfers/TransferRowDelegate.h"
#include "transfers/TransfersTableView.h"
#include "transfers/TransfersTableViewDataSource.h"

#include <QStandardItemModel>

#include <gtest/gtest.h>

namespace {

struct Hover
{
    bool completedList;
    bool pointerOver;
};

QStringList shownFor(TransferState state, Hover hover, qint64 subType = VLRTransferReporting::RequestedDownloadSubType)
{
    TransfersTableView table(nullptr);
    TransferRow row(makeTransfer("t", state, VLRTransferReporting::UploadType, subType), &table, false);
    if (hover.completedList)
        row.setShowCancelButton(true);
    if (hover.pointerOver)
        row.mouseEntered();
    return sizeCellElements(row);
}

struct RecordingRowDelegate : TransferRowDelegate
{
    QStringList calls;
    void transferRowDidCancel(TransferRow*) override { calls.append("cancel"); }
    void transferRowDidPause(TransferRow*) override { calls.append("pause"); }
    void transferRowDidResume(TransferRow*) override { calls.append("resume"); }
    void transferRowDidRetry(TransferRow*) override { calls.append("retry"); }
};

} // namespace

TEST(TransferRow, HoverButtonsFollowTheStatusTheListAndThePointer)
{
    const Hover away{false, false}, over{false, true}, completed{true, false}, completedOver{true, true};
    using L = QStringList;
    EXPECT_EQ(shownFor(TransferState::Queued, away), L({"size"}));
    EXPECT_EQ(shownFor(TransferState::Queued, over), L({"cancel"}));
    EXPECT_EQ(shownFor(TransferState::Queued, completed), L({"cancel"}));
    EXPECT_EQ(shownFor(TransferState::Running, away), L({"size"}));
    EXPECT_EQ(shownFor(TransferState::Running, over), L({"cancel", "pause"}));
    EXPECT_EQ(shownFor(TransferState::Paused, over), L({"cancel", "resume"}));
    EXPECT_EQ(shownFor(TransferState::Finished, over), L({"cancel"}));
    EXPECT_EQ(shownFor(TransferState::Finished, completedOver), L({"cancel"}));
    // A failed transfer that got somewhere is also in progress: retry lies
    // over pause, and retry shows without the pointer.
    EXPECT_EQ(shownFor(TransferState::Failed, away), L({"retry", "size"}));
    EXPECT_EQ(shownFor(TransferState::Failed, over), L({"cancel", "pause", "retry"}));
    EXPECT_EQ(shownFor(TransferState::Failed, completed), L({"cancel", "retry"}));
    // Revisions the library makes by itself ignore the pointer.
    EXPECT_EQ(shownFor(TransferState::Running, over, VLRTransferReporting::AutoRevisionSubType), L({"size"}));
}

TEST(TransferRow, CellsTellTypeStatusAndFailureAndRebuildOnEverySetter)
{
    TransfersTableView table(nullptr);
    auto transfer = makeTransfer("t", TransferState::Queued, 2);
    TransferRow row(transfer, &table, false);
    EXPECT_EQ(row.typeView().imageName, "queue_icon_download_inactive");
    EXPECT_EQ(row.statusView().imageName, "queue_icon_transfer_queued_inactive");
    EXPECT_EQ(row.nameView().text, "T.PSD");
    EXPECT_EQ(row.sizeView().text, "1.2 MB");
    EXPECT_EQ(row.sizeView().buttons.first().imageName, "queue_button_cancel_inactive");

    // The record changes under the row; the row tells it at the next setter.
    transfer->setFractionCompleted(0.996);
    EXPECT_EQ(row.statusView().imageName, "queue_icon_transfer_queued_inactive");
    row.setSelected(true);
    EXPECT_EQ(row.statusView().text, "100%");
    EXPECT_EQ(row.statusView().textColor, row.nameView().textColor);
    EXPECT_EQ(row.typeView().imageName, "queue_icon_download_active");
    EXPECT_EQ(row.sizeView().buttons.first().imageName, "queue_button_cancel_active");

    transfer->setError(vlr::makeError("VLRErrorDomain", 1, "Connection lost"));
    transfer->setFinished(true);
    row.setDarkBackground(true);
    EXPECT_EQ(row.statusView().imageName, "queue_icon_transfer_error");
    EXPECT_EQ(row.nameView().toolTip, "Connection lost");
    EXPECT_NE(row.typeView().backgroundColor, TransferRow(transfer, &table, false).typeView().backgroundColor);

    TransferRow revision(makeTransfer("r", TransferState::Finished, 1, VLRTransferReporting::AutoRevisionSubType),
                         &table, false);
    EXPECT_EQ(revision.typeView().imageName, "queue_icon_auto_revision_inactive");
    EXPECT_EQ(revision.statusView().imageName, "queue_icon_transfer_completed");

    // A row without a record shows an empty queued row and reports nothing.
    TransferRow empty(nullptr, &table, false);
    EXPECT_EQ(sizeCellElements(empty), QStringList({"size"}));
    empty.cancelTransfer();
}

TEST(TransferRow, ButtonsReportToTheDelegateAndOnlyAFourColumnTableIsAccepted)
{
    TransfersTableView table(nullptr);
    TransferRow row(makeTransfer("t", TransferState::Running), &table, false);
    RecordingRowDelegate delegate;
    row.setDelegate(&delegate);
    for (const auto action : {TransferRowView::Action::Cancel, TransferRowView::Action::Pause,
                              TransferRowView::Action::Resume, TransferRowView::Action::Retry})
        row.performAction(action);
    EXPECT_EQ(delegate.calls, QStringList({"cancel", "pause", "resume", "retry"}));

    QTableView threeColumns;
    QStandardItemModel model(0, 3);
    threeColumns.setModel(&model);
    try {
        TransferRow wrong(makeTransfer("t", TransferState::Queued), &threeColumns, false);
        ADD_FAILURE() << "a three-column table was accepted";
    } catch (const vlr::Exception& exception) {
        EXPECT_EQ(exception.name(), "Invalid tableView");
    }
}
