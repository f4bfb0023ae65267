#pragma once

#include "service/VLRTypes.h"
#include "transfers/TransferRowView.h"

#include <QObject>
#include <QPointer>
#include <QTableView>

#include <array>

class TransferRowDelegate;

// One transfer as one row of a transfers table: four cells (type, status,
// name, size) built from the record and the row's own flags, and the hover
// buttons cancel, pause, resume and retry, whose clicks go to the delegate.
// The row does not watch its record: it shows what the record held when the
// cells were last built, and a list update hands it the record again.
//
// Every setter but setShowPauseResumeButton() and setDelegate() rebuilds the
// cells, even with an unchanged value. The cells are built when first read
// after that, so that a list update costs the rows that are painted.
class TransferRow : public QObject
{
    Q_OBJECT

public:
    // Throws "Invalid tableView" unless the table has the four columns.
    TransferRow(VLRTransferReportingPtr transfer, QTableView* tableView, bool selected);

    const VLRTransferReportingPtr& transfer() const { return m_transfer; }
    void setTransfer(const VLRTransferReportingPtr& transfer);
    // The table the row was made for; it stays that one when the row moves
    // to another list.
    QTableView* tableView() const { return m_tableView; }
    TransferRowDelegate* delegate() const { return m_delegate; }
    void setDelegate(TransferRowDelegate* delegate) { m_delegate = delegate; }

    bool selected() const { return m_selected; }
    void setSelected(bool selected);
    bool darkBackground() const { return m_darkBackground; }
    void setDarkBackground(bool darkBackground);
    // Cleared while all transfers are paused; seen at the next rebuild.
    bool showPauseResumeButton() const { return m_showPauseResumeButton; }
    void setShowPauseResumeButton(bool show) { m_showPauseResumeButton = show; }
    // The completed list's rows: cancel always shown, size never.
    bool showCancelButton() const { return m_showCancelButton; }
    void setShowCancelButton(bool show);

    const TransferRowView& typeView();
    const TransferRowView& statusView();
    const TransferRowView& nameView();
    const TransferRowView& sizeView();
    // The cell of a column by its number, 0 type to 3 size.
    const TransferRowView& viewForColumn(int column);

    bool mousedOver() const { return m_mousedOver; }
    void mouseEntered();
    void mouseExited();

    // The hover buttons' actions.
    void cancelTransfer();
    void pauseTransfer();
    void resumeTransfer();
    void retryTransfer();
    void performAction(TransferRowView::Action action);

private:
    void rebuild();
    void createViewsIfNeeded();
    bool transferIsInProgress() const;
    TransferRowView trackedViewWithFrame(const QRectF& frame) const;
    TransferRowView createTypeViewInFrame(const QRectF& frame, int type) const;
    TransferRowView createStatusViewInFrame(const QRectF& frame, int type) const;
    TransferRowView createNameViewInFrame(const QRectF& frame, const QString& name) const;
    TransferRowView createSizeViewInFrame(const QRectF& frame, qint64 size) const;
    void showButtons(bool hover);

    bool m_mousedOver = false;
    bool m_selected = false;
    bool m_darkBackground = false;
    bool m_showPauseResumeButton = true;
    bool m_showCancelButton = false;
    bool m_viewsStale = true;
    std::array<TransferRowView, 4> m_views;
    VLRTransferReportingPtr m_transfer;
    QPointer<QTableView> m_tableView;
    TransferRowDelegate* m_delegate = nullptr;
};
