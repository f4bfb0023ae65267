#pragma once

#include <QList>
#include <QPointer>
#include <QTableView>

#include <functional>
#include <optional>

class TransferRow;
class TransfersTableModel;
class TransfersTableViewDataSource;

// A list of transfers: four columns "type", "status", "name" and "size", one
// row a transfer, painted from the cells its data source builds. Only the
// rows on screen are ever asked for, so that a list of thousands costs what
// a screenful costs. The row under the pointer hears it enter and leave, and
// its hover buttons take clicks before the selection does.
class TransfersTableView : public QTableView
{
    Q_OBJECT

public:
    static constexpr int RowHeight = 32;
    // The pasteboard type of a reorder drag: the dragged row numbers.
    static inline const QString DraggedType = QStringLiteral("public.text");

    explicit TransfersTableView(TransfersTableViewDataSource* dataSource, QWidget* parent = nullptr);
    ~TransfersTableView() override;

    void setDataSource(TransfersTableViewDataSource* dataSource) { m_dataSource = dataSource; }
    TransfersTableViewDataSource* dataSource() const { return m_dataSource; }

    // Asks the data source for everything afresh.
    void reloadData();
    void reloadDataForRowIndexes(const QList<int>& rows);
    // Ascending.
    QList<int> selectedRowIndexes() const;
    void selectRowIndexes(const QList<int>& rows, bool byExtendingSelection);
    // The first selected row, or -1.
    int selectedRow() const;
    // The row of the last click or double click; -1 outside every row.
    int clickedRow() const { return m_clickedRow; }
    void scrollRowToVisible(int row);
    // This table takes reorder drops; every table can start a drag.
    void registerForDraggedTypes(const QStringList& types);
    bool acceptsDraggedType(const QString& type) const { return m_draggedTypes.contains(type); }
    void setDoubleAction(std::function<void(TransfersTableView*)> action) { m_doubleAction = std::move(action); }
    // The point of the pointer in the viewport while it is over the table.
    std::optional<QPoint> pointerPosition() const { return m_pointer; }

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event = nullptr) const override;

private:
    // Tells the row under the pointer, and the one that was, of the change.
    void updateHover();
    // The hover button of the row under the point that would take a click.
    std::optional<int> buttonAt(const QPoint& point, int* row) const;

    TransfersTableViewDataSource* m_dataSource = nullptr;
    TransfersTableModel* m_model = nullptr;
    QStringList m_draggedTypes;
    std::function<void(TransfersTableView*)> m_doubleAction;
    int m_clickedRow = -1;
    QPointer<TransferRow> m_hoveredRow;
    std::optional<QPoint> m_pointer;
    // The row and button a press landed on, until the release.
    int m_pressedRow = -1;
    std::optional<int> m_pressedButton;
};
