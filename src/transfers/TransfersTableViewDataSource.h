#pragma once

#include <QList>

class QMimeData;
class TransferRow;
class TransfersTableView;
struct TransferRowView;

// What a transfers table asks of the controller that fills it: its rows and
// their cells, whether a click may select, and what a drag carries and what
// a drop does.
class TransfersTableViewDataSource
{
public:
    virtual ~TransfersTableViewDataSource() = default;
    virtual int numberOfRowsInTableView(TransfersTableView* tableView) = 0;
    // None when the row number is out of range.
    virtual TransferRow* transferRowForTableViewRow(TransfersTableView* tableView, int row) = 0;
    // The cell to paint; none for an unknown row or column.
    virtual const TransferRowView* tableViewViewForTableColumnRow(TransfersTableView* tableView, int column,
                                                                  int row) = 0;
    virtual bool tableViewShouldSelectRow(TransfersTableView* tableView, int row) = 0;
    virtual bool tableViewWriteRowsWithIndexesToPasteboard(TransfersTableView* tableView, const QList<int>& rows,
                                                           QMimeData* pasteboard) = 0;
    // row is where the drop landed; the row count or more for behind the last.
    virtual bool tableViewAcceptDropRow(TransfersTableView* tableView, const QMimeData* pasteboard, int row) = 0;
};
