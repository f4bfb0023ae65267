#pragma once

#include <QAbstractTableModel>

class TransfersTableView;

// The item model behind a transfers table: its counts come from the table's
// data source, its cells are painted rather than read, and its drags carry
// row numbers under the table's dragged type.
class TransfersTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit TransfersTableModel(TransfersTableView* tableView);

    // Everything changed: the table asks again for what it shows.
    void reload();

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    // The column identifiers: "type", "status", "name", "size".
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;
    Qt::DropActions supportedDropActions() const override;
    Qt::DropActions supportedDragActions() const override;

private:
    TransfersTableView* m_tableView;
};
