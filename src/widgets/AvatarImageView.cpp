#include "widgets/AvatarImageView.h"

#include <QPainter>
#include <QPainterPath>

AvatarImageView::AvatarImageView(QWidget* parent)
    : QWidget(parent)
{ }

void AvatarImageView::setImage(const QPixmap& image)
{
    m_image = image;
    update();
}

void AvatarImageView::setCornerRadius(qreal radius)
{
    m_cornerRadius = radius;
    update();
}

void AvatarImageView::paintEvent(QPaintEvent*)
{
    if (m_image.isNull())
        return;
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QRectF bounds(rect());
    QPainterPath clip;
    clip.addRoundedRect(bounds, m_cornerRadius, m_cornerRadius);
    painter.setClipPath(clip);
    // The picture covers the whole view; what overhangs is cut off evenly.
    const QSizeF size = m_image.deviceIndependentSize().scaled(bounds.size(), Qt::KeepAspectRatioByExpanding);
    QRectF target(QPointF(0, 0), size);
    target.moveCenter(bounds.center());
    painter.drawPixmap(target, m_image, QRectF(m_image.rect()));
}
