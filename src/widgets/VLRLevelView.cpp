#include "widgets/VLRLevelView.h"

#include <QPaintEvent>
#include <QPainter>

#include <cmath>

namespace {

constexpr int kSmoothingInterval = 30; // milliseconds
// Each tick closes this share of the distance to a higher level.
constexpr qreal kRiseFactor = 0.05;

qreal shownLevel(qreal smoothedValue)
{
    return std::trunc(smoothedValue + 0.5);
}

} // namespace

VLRLevelView::VLRLevelView(QWidget* parent)
    : QWidget(parent)
{
    m_smoothingTimer.setInterval(kSmoothingInterval);
    connect(&m_smoothingTimer, &QTimer::timeout, this, &VLRLevelView::smoothingTimer);
    m_smoothingTimer.start();
}

void VLRLevelView::setBarColor(const QColor& color)
{
    m_barColor = color;
    update();
}

void VLRLevelView::setBackgroundColor(const QColor& color)
{
    m_backgroundColor = color;
    update();
}

void VLRLevelView::setBorderColor(const QColor& color)
{
    m_borderColor = color;
    update();
}

void VLRLevelView::setBorderWidth(qreal width)
{
    m_borderWidth = width;
    update();
}

void VLRLevelView::setBarInset(qreal inset)
{
    m_barInset = inset;
    update();
}

void VLRLevelView::setMinValue(qreal value)
{
    m_minValue = value;
    update();
}

void VLRLevelView::setMaxValue(qreal value)
{
    m_maxValue = value;
    update();
}

void VLRLevelView::smoothingTimer()
{
    const qreal before = shownLevel(m_smoothedValue);
    if (m_integerValue > m_smoothedValue)
        m_smoothedValue += kRiseFactor * (m_integerValue - m_smoothedValue);
    else
        m_smoothedValue = m_integerValue;
    if (shownLevel(m_smoothedValue) != before)
        update();
}

void VLRLevelView::paintEvent(QPaintEvent* event)
{
    // The view always redraws whole, so the dirty rectangle is its bounds.
    const QRectF dirty(event->rect());
    const qreal fraction = (shownLevel(m_smoothedValue) - m_minValue) / (m_maxValue - m_minValue);
    QPainter painter(this);
    painter.fillRect(dirty, m_backgroundColor);
    if (m_borderWidth > 0) {
        painter.setPen(QPen(m_borderColor, m_borderWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(dirty);
    }
    // An empty scale gives no number; Qt's raster engine takes coordinates
    // as integers, where a NaN is undefined, so there is no bar to draw.
    if (!std::isfinite(fraction))
        return;
    // Only the inset's origin counts: a full bar runs past the right inset
    // and is clipped there.
    QRectF bar = dirty.adjusted(m_barInset, m_barInset, -m_barInset, -m_barInset);
    bar.setWidth(fraction * dirty.width());
    painter.fillRect(bar, m_barColor);
}
