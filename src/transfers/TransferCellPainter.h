#pragma once

#include <QStyledItemDelegate>

class TransfersTableView;
struct TransferRowView;

// Paints a transfers table's cells from the rows' cell descriptions: the
// row's own background, a centred picture or a text in the program's face,
// and the hover buttons that are showing. The table's selection look is not
// drawn: a selected row shows it in its colours and pictures.
class TransferCellPainter : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit TransferCellPainter(TransfersTableView* tableView);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    static void paintView(QPainter* painter, const QRect& rect, const TransferRowView& view,
                          const std::optional<QPoint>& pointer);

private:
    TransfersTableView* m_tableView;
};
