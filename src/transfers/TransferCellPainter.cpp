#include "transfers/TransferCellPainter.h"

#include "transfers/TransferRowView.h"
#include "transfers/TransfersTableView.h"
#include "transfers/TransfersTableViewDataSource.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"

#include <QPainter>

namespace {

constexpr qreal BodyFontSize = 12;
constexpr qreal SmallestFontSize = 6;
// Labels sit a point below the arithmetic centre, as the kit's labels do.
constexpr int TextVerticalOffset = 1;
constexpr int TextInset = 2;

void drawImage(QPainter* painter, const QRectF& frame, const QString& name)
{
    const QPixmap image =
        VLRImageCatalogue::imageNamed(name, frame.size().toSize(), painter->device()->devicePixelRatioF());
    if (!image.isNull())
        painter->drawPixmap(frame.topLeft(), image);
}

void drawText(QPainter* painter, const TransferRowView& view)
{
    QFont font = VLRFonts::muli(BodyFontSize);
    const QRect area = view.textFrame.toRect().adjusted(TextInset, TextVerticalOffset, -TextInset, TextVerticalOffset);
    QString text = view.text;
    if (view.scalesFont) {
        // Shrink a point at a time until the whole text fits.
        while (font.pixelSize() > SmallestFontSize && QFontMetrics(font).horizontalAdvance(text) > area.width())
            font.setPixelSize(font.pixelSize() - 1);
    } else {
        text = QFontMetrics(font).elidedText(text, Qt::ElideMiddle, area.width());
    }
    painter->setFont(font);
    painter->setPen(view.textColor);
    painter->drawText(area, int(view.alignment | Qt::AlignVCenter) | Qt::TextSingleLine, text);
}

} // namespace

TransferCellPainter::TransferCellPainter(TransfersTableView* tableView)
    : QStyledItemDelegate(tableView)
    , m_tableView(tableView)
{ }

void TransferCellPainter::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    auto* dataSource = m_tableView->dataSource();
    const TransferRowView* view =
        dataSource ? dataSource->tableViewViewForTableColumnRow(m_tableView, index.column(), index.row()) : nullptr;
    if (!view)
        return;
    std::optional<QPoint> pointer = m_tableView->pointerPosition();
    if (pointer)
        *pointer -= option.rect.topLeft();
    paintView(painter, option.rect, *view, pointer);
}

void TransferCellPainter::paintView(QPainter* painter, const QRect& rect, const TransferRowView& view,
                                    const std::optional<QPoint>& pointer)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->fillRect(rect, view.backgroundColor);
    painter->translate(rect.topLeft());
    if (!view.imageName.isEmpty())
        drawImage(painter, view.imageFrame, view.imageName);
    if (!view.text.isEmpty() && !view.textHidden)
        drawText(painter, view);
    for (const TransferRowView::Button& button : view.buttons) {
        if (button.hidden)
            continue;
        // A button covers what lies under it: retry hides pause in the same place.
        painter->fillRect(button.frame, view.backgroundColor);
        const bool pointed = pointer && button.frame.contains(*pointer);
        drawImage(painter, button.frame,
                  pointed && !button.alternateImageName.isEmpty() ? button.alternateImageName : button.imageName);
    }
    painter->restore();
}

QSize TransferCellPainter::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const
{
    return {0, TransfersTableView::RowHeight};
}
