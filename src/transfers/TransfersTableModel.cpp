#include "transfers/TransfersTableModel.h"

#include "transfers/TransfersTableView.h"
#include "transfers/TransfersTableViewDataSource.h"

#include <QMimeData>

#include <array>
#include <set>

namespace {

const std::array<QString, 4> ColumnIdentifiers = {QStringLiteral("type"), QStringLiteral("status"),
                                                  QStringLiteral("name"), QStringLiteral("size")};

} // namespace

TransfersTableModel::TransfersTableModel(TransfersTableView* tableView)
    : QAbstractTableModel(tableView)
    , m_tableView(tableView)
{ }

void TransfersTableModel::reload()
{
    beginResetModel();
    endResetModel();
}

int TransfersTableModel::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid() || !m_tableView->dataSource())
        return 0;
    return m_tableView->dataSource()->numberOfRowsInTableView(m_tableView);
}

int TransfersTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(ColumnIdentifiers.size());
}

QVariant TransfersTableModel::data(const QModelIndex&, int) const
{
    return {};
}

QVariant TransfersTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0
        || section >= int(ColumnIdentifiers.size()))
        return {};
    return ColumnIdentifiers.at(section);
}

Qt::ItemFlags TransfersTableModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags flags = Qt::ItemIsDragEnabled;
    if (index.isValid())
        flags |= Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (m_tableView->acceptsDraggedType(TransfersTableView::DraggedType))
        flags |= Qt::ItemIsDropEnabled;
    return flags;
}

QStringList TransfersTableModel::mimeTypes() const
{
    return {TransfersTableView::DraggedType};
}

QMimeData* TransfersTableModel::mimeData(const QModelIndexList& indexes) const
{
    std::set<int> rows;
    for (const QModelIndex& index : indexes)
        rows.insert(index.row());
    auto* data = new QMimeData;
    auto* dataSource = m_tableView->dataSource();
    if (!dataSource
        || !dataSource->tableViewWriteRowsWithIndexesToPasteboard(m_tableView, QList<int>(rows.begin(), rows.end()),
                                                                  data)) {
        delete data;
        return nullptr;
    }
    return data;
}

bool TransfersTableModel::canDropMimeData(const QMimeData* data, Qt::DropAction, int, int, const QModelIndex&) const
{
    return data && data->hasFormat(TransfersTableView::DraggedType)
        && m_tableView->acceptsDraggedType(TransfersTableView::DraggedType);
}

bool TransfersTableModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                       const QModelIndex& parent)
{
    if (!canDropMimeData(data, action, row, column, parent) || !m_tableView->dataSource())
        return false;
    // A drop on a row and a drop above it mean the same; a drop on no row
    // lands behind the last one.
    if (row < 0)
        row = parent.isValid() ? parent.row() : rowCount();
    return m_tableView->dataSource()->tableViewAcceptDropRow(m_tableView, data, row);
}

Qt::DropActions TransfersTableModel::supportedDropActions() const
{
    return Qt::MoveAction;
}

Qt::DropActions TransfersTableModel::supportedDragActions() const
{
    return Qt::MoveAction;
}
