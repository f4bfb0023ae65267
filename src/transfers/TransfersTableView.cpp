#include "transfers/TransfersTableView.h"

#include "transfers/TransferCellPainter.h"
#include "transfers/TransferRow.h"
#include "transfers/TransfersTableModel.h"
#include "transfers/TransfersTableViewDataSource.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QItemSelection>
#include <QMouseEvent>
#include <QToolTip>

namespace {

constexpr int SizeColumn = 3;

} // namespace

TransfersTableView::TransfersTableView(TransfersTableViewDataSource* dataSource, QWidget* parent)
    : QTableView(parent)
    , m_dataSource(dataSource)
    , m_model(new TransfersTableModel(this))
{
    setModel(m_model);
    setItemDelegate(new TransferCellPainter(this));
    // Every row is the same height, so the table places rows by arithmetic
    // and never measures the ones it does not show.
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(RowHeight);
    horizontalHeader()->hide();
    horizontalHeader()->setMinimumSectionSize(1);
    setShowGrid(false);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setMouseTracking(true);
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setDefaultDropAction(Qt::MoveAction);
    setDropIndicatorShown(true);
    setDragDropOverwriteMode(false);
}

TransfersTableView::~TransfersTableView() = default;

void TransfersTableView::reloadData()
{
    // Reloading keeps the selected row numbers, as far as the rows reach.
    const QList<int> selected = selectedRowIndexes();
    m_model->reload();
    selectRowIndexes(selected, false);
    updateHover();
}

void TransfersTableView::reloadDataForRowIndexes(const QList<int>& rows)
{
    for (int row : rows) {
        if (row >= 0 && row < m_model->rowCount())
            emit m_model->dataChanged(m_model->index(row, 0), m_model->index(row, m_model->columnCount() - 1));
    }
}

QList<int> TransfersTableView::selectedRowIndexes() const
{
    QList<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void TransfersTableView::selectRowIndexes(const QList<int>& rows, bool byExtendingSelection)
{
    QItemSelection selection;
    const int count = m_model->rowCount();
    for (int row : rows) {
        if (row >= 0 && row < count)
            selection.select(m_model->index(row, 0), m_model->index(row, m_model->columnCount() - 1));
    }
    auto command = QItemSelectionModel::Select | QItemSelectionModel::Rows;
    if (!byExtendingSelection)
        command |= QItemSelectionModel::Clear;
    selectionModel()->select(selection, command);
}

int TransfersTableView::selectedRow() const
{
    const QList<int> rows = selectedRowIndexes();
    return rows.isEmpty() ? -1 : rows.first();
}

void TransfersTableView::scrollRowToVisible(int row)
{
    if (row >= 0 && row < m_model->rowCount())
        scrollTo(m_model->index(row, 0));
}

void TransfersTableView::registerForDraggedTypes(const QStringList& types)
{
    m_draggedTypes = types;
    setAcceptDrops(true);
    viewport()->setAcceptDrops(true);
    setDragDropMode(QAbstractItemView::DragDrop);
}

std::optional<int> TransfersTableView::buttonAt(const QPoint& point, int* row) const
{
    const QModelIndex index = indexAt(point);
    *row = index.isValid() ? index.row() : -1;
    if (!index.isValid() || index.column() != SizeColumn || !m_dataSource)
        return std::nullopt;
    const TransferRowView* view =
        m_dataSource->tableViewViewForTableColumnRow(const_cast<TransfersTableView*>(this), SizeColumn, index.row());
    if (!view)
        return std::nullopt;
    const QPointF local = point - visualRect(index).topLeft();
    // The last button added lies on top.
    for (int i = int(view->buttons.size()) - 1; i >= 0; --i) {
        if (!view->buttons.at(i).hidden && view->buttons.at(i).frame.contains(local))
            return i;
    }
    return std::nullopt;
}

void TransfersTableView::updateHover()
{
    TransferRow* now = nullptr;
    if (m_pointer && m_dataSource) {
        const QModelIndex index = indexAt(*m_pointer);
        if (index.isValid())
            now = m_dataSource->transferRowForTableViewRow(this, index.row());
    }
    if (now == m_hoveredRow)
        return;
    if (m_hoveredRow)
        m_hoveredRow->mouseExited();
    m_hoveredRow = now;
    if (now)
        now->mouseEntered();
    viewport()->update();
}

void TransfersTableView::mouseMoveEvent(QMouseEvent* event)
{
    m_pointer = event->position().toPoint();
    updateHover();
    viewport()->update(visualRect(indexAt(*m_pointer)).adjusted(-width(), 0, width(), 0));
    if (!m_pressedButton)
        QTableView::mouseMoveEvent(event);
}

void TransfersTableView::mousePressEvent(QMouseEvent* event)
{
    int row = -1;
    m_pressedButton = buttonAt(event->position().toPoint(), &row);
    m_clickedRow = row;
    if (m_pressedButton) {
        m_pressedRow = row;
        event->accept();
        return;
    }
    QTableView::mousePressEvent(event);
}

void TransfersTableView::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_pressedButton) {
        QTableView::mouseReleaseEvent(event);
        return;
    }
    int row = -1;
    const std::optional<int> button = buttonAt(event->position().toPoint(), &row);
    const std::optional<int> pressed = std::exchange(m_pressedButton, std::nullopt);
    // A button acts when the press and the release are both on it.
    if (button != pressed || row != m_pressedRow || !m_dataSource)
        return;
    TransferRow* transferRow = m_dataSource->transferRowForTableViewRow(this, row);
    const TransferRowView* view = m_dataSource->tableViewViewForTableColumnRow(this, SizeColumn, row);
    if (transferRow && view && *button < view->buttons.size())
        transferRow->performAction(view->buttons.at(*button).action);
}

void TransfersTableView::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    m_clickedRow = index.isValid() ? index.row() : -1;
    if (m_doubleAction)
        m_doubleAction(this);
}

void TransfersTableView::leaveEvent(QEvent* event)
{
    m_pointer.reset();
    updateHover();
    QTableView::leaveEvent(event);
}

bool TransfersTableView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && m_dataSource) {
        auto* help = static_cast<QHelpEvent*>(event);
        const QModelIndex index = indexAt(help->pos());
        const TransferRowView* view =
            index.isValid() ? m_dataSource->tableViewViewForTableColumnRow(this, index.column(), index.row()) : nullptr;
        if (view && !view->toolTip.isEmpty())
            QToolTip::showText(help->globalPos(), view->toolTip, viewport(), visualRect(index));
        else
            QToolTip::hideText();
        return true;
    }
    if (event->type() == QEvent::Leave) {
        m_pointer.reset();
        updateHover();
    }
    return QTableView::viewportEvent(event);
}

QItemSelectionModel::SelectionFlags TransfersTableView::selectionCommand(const QModelIndex& index,
                                                                         const QEvent* event) const
{
    const QItemSelectionModel::SelectionFlags command = QTableView::selectionCommand(index, event);
    // Only the user's own choice of a new row is offered to the data source.
    const bool chooses = event && (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::KeyPress);
    if (chooses && index.isValid() && m_dataSource && (command & QItemSelectionModel::Select)
        && !selectionModel()->isRowSelected(index.row(), QModelIndex())) {
        if (!m_dataSource->tableViewShouldSelectRow(const_cast<TransfersTableView*>(this), index.row()))
            return QItemSelectionModel::NoUpdate;
    }
    return command;
}
