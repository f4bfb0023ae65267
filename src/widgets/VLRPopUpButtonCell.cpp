#include "widgets/VLRPopUpButtonCell.h"

#include "widgets/VLRImageCatalogue.h"

#include <QPainter>
#include <QStyleOptionComboBox>
#include <QStylePainter>

VLRPopUpButtonCell::VLRPopUpButtonCell(QWidget* parent)
    : QComboBox(parent)
{ }

void VLRPopUpButtonCell::paintEvent(QPaintEvent*)
{
    const QString name = QStringLiteral("file_drop_workspace_popup");
    const QPixmap bezel =
        VLRImageCatalogue::imageNamed(name, VLRImageCatalogue::naturalSize(name), devicePixelRatioF());
    QStylePainter painter(this);
    if (!bezel.isNull()) {
        // The frame's own rectangle of the picture, copied over what is there.
        const qreal ratio = bezel.devicePixelRatio();
        const QRectF frame(rect());
        const QRectF source(frame.x() * ratio, frame.y() * ratio, frame.width() * ratio, frame.height() * ratio);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawPixmap(QRectF(QPointF(0, 0), frame.size()), bezel, source);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}
