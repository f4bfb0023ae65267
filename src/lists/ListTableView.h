#pragma once

#include <QAbstractScrollArea>
#include <QList>
#include <QPointer>

#include <vector>

class ListTableViewDataSource;

// A one-column list of views of varying height that scrolls. It asks its
// data source for the views of the rows in sight only, so a list of
// thousands builds no more views than fit on the page; views that leave the
// sight are hidden, never deleted. Views still in the table when it goes go
// with it, so their controllers must hold them by QPointer (ListItemViewController
// does, and builds a new one when asked again).
// reloadData() reads the count and heights afresh; nothing else does.
class ListTableView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit ListTableView(QWidget* parent = nullptr);

    ListTableViewDataSource* dataSource() const { return m_dataSource; }
    void setDataSource(ListTableViewDataSource* dataSource) { m_dataSource = dataSource; }

    void reloadData();

    int numberOfRows() const { return int(m_rowOffsets.size()) - 1; }
    // The views placed in sight now, top to bottom.
    QList<QWidget*> visibleViews() const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void placeVisibleRows();

    ListTableViewDataSource* m_dataSource = nullptr;
    // Top of each row and, last, the bottom of the list.
    std::vector<int> m_rowOffsets{0};
    QList<QPointer<QWidget>> m_visibleViews;
};
