#pragma once

class ListTableView;
class QWidget;

// What a ListTableView asks of its owner. Rows are numbered from 0.
class ListTableViewDataSource
{
public:
    virtual ~ListTableViewDataSource() = default;
    virtual int numberOfRowsInTableView(ListTableView* tableView) = 0;
    // Asked only for rows that come into sight; the view stays the data
    // source's, the table only places it.
    virtual QWidget* tableViewViewForRow(ListTableView* tableView, int row) = 0;
    virtual int tableViewHeightOfRow(ListTableView* tableView, int row) = 0;
};
