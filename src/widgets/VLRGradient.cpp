#include "widgets/VLRGradient.h"

#include <QLinearGradient>
#include <QRectF>

#include <cmath>
#include <numbers>

VLRGradient::VLRGradient(const QColor& startColor, const QColor& endColor, qint32 angle)
    : m_startColor(startColor)
    , m_endColor(endColor)
    , m_angle(angle)
{ }

QLinearGradient VLRGradient::linearGradientInRect(const QRectF& rect) const
{
    const double radians = m_angle * std::numbers::pi / 180.0;
    // Screen y grows downwards, so an angle upwards is a negative y.
    const QPointF direction(std::cos(radians), -std::sin(radians));
    const double halfLength = std::abs(direction.x()) * rect.width() / 2 + std::abs(direction.y()) * rect.height() / 2;
    const QPointF center = rect.center();
    QLinearGradient gradient(center - direction * halfLength, center + direction * halfLength);
    gradient.setColorAt(0, m_startColor);
    gradient.setColorAt(1, m_endColor);
    return gradient;
}
