#pragma once

#include <QColor>

class QLinearGradient;
class QRectF;

// A linear gradient from one colour to another along an angle in degrees:
// 0 runs left to right, 90 bottom to top.
class VLRGradient
{
public:
    VLRGradient(const QColor& startColor, const QColor& endColor, qint32 angle);

    QColor startColor() const { return m_startColor; }
    QColor endColor() const { return m_endColor; }
    qint32 angle() const { return m_angle; }

    // The gradient laid over the rectangle, from corner to corner along the
    // angle, so that the rectangle holds its whole extent.
    QLinearGradient linearGradientInRect(const QRectF& rect) const;

    bool operator==(const VLRGradient&) const = default;

private:
    QColor m_startColor;
    QColor m_endColor;
    qint32 m_angle = 0;
};
