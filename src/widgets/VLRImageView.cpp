#include "widgets/VLRImageView.h"

#include <QPainter>

VLRImageView::VLRImageView(QWidget* parent)
    : QWidget(parent)
{ }

void VLRImageView::setImage(const QPixmap& image)
{
    // Pixmaps that share their data are one picture: every frame and state
    // image is loaded once and handed out as that same pixmap.
    if (image.cacheKey() == m_image.cacheKey() || (image.isNull() && m_image.isNull()))
        return;
    m_image = image;
    update();
    emit imageChanged(m_image);
}

void VLRImageView::paintEvent(QPaintEvent*)
{
    if (m_image.isNull())
        return;
    QSizeF size = m_image.deviceIndependentSize();
    if (size.width() > width() || size.height() > height())
        size = size.scaled(QSizeF(this->size()), Qt::KeepAspectRatio);
    QRectF target(QPointF(0, 0), size);
    target.moveCenter(QRectF(rect()).center());
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, m_image, QRectF(m_image.rect()));
}
