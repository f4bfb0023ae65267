#include "widgets/VLRLayer.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

QPainterPath roundedPath(const QRectF& rect, qreal radius)
{
    QPainterPath path;
    const qreal clamped = std::min(radius, std::min(rect.width(), rect.height()) / 2);
    path.addRoundedRect(rect, clamped, clamped);
    return path;
}

} // namespace

void VLRLayer::paintBackground(QPainter& painter, const QRectF& bounds) const
{
    const QPainterPath shape = roundedPath(bounds, cornerRadius);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, cornerRadius > 0);
    if (backgroundColor.isValid() && backgroundColor.alpha() > 0)
        painter.fillPath(shape, backgroundColor);
    if (!contents.isNull()) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(bounds, contents, QRectF(contents.rect()));
    }
    painter.restore();
}

void VLRLayer::paintBorder(QPainter& painter, const QRectF& bounds) const
{
    if (borderWidth <= 0 || !borderColor.isValid())
        return;
    const qreal inset = borderWidth / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, cornerRadius > 0);
    painter.setPen(QPen(borderColor, borderWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(
        roundedPath(bounds.adjusted(inset, inset, -inset, -inset), std::max<qreal>(0, cornerRadius - inset)));
    painter.restore();
}
