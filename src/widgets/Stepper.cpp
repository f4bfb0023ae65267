#include "widgets/Stepper.h"

#include "app/VLRColors.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

constexpr int FirstRepeatMilliseconds = 400;
constexpr int RepeatMilliseconds = 60;

QPainterPath arrow(const QRectF& half, bool up)
{
    const QPointF centre = half.center();
    const qreal w = 4;
    const qreal h = 2.5;
    QPainterPath path;
    if (up) {
        path.moveTo(centre.x() - w, centre.y() + h);
        path.lineTo(centre.x(), centre.y() - h);
        path.lineTo(centre.x() + w, centre.y() + h);
    } else {
        path.moveTo(centre.x() - w, centre.y() - h);
        path.lineTo(centre.x(), centre.y() + h);
        path.lineTo(centre.x() + w, centre.y() - h);
    }
    return path;
}

} // namespace

Stepper::Stepper(QWidget* parent)
    : QWidget(parent)
{
    m_repeat.setSingleShot(false);
    connect(&m_repeat, &QTimer::timeout, this, [this] {
        m_repeat.setInterval(RepeatMilliseconds);
        step();
    });
}

void Stepper::setIntegerValue(qint64 value)
{
    const qint64 bounded = std::clamp(value, m_minValue, m_maxValue);
    if (bounded == m_value)
        return;
    m_value = bounded;
    update();
}

void Stepper::setBounds(qint64 minValue, qint64 maxValue)
{
    m_minValue = minValue;
    m_maxValue = std::max(minValue, maxValue);
    setIntegerValue(m_value);
}

QSize Stepper::sizeHint() const
{
    return QSize(18, 26);
}

void Stepper::step()
{
    const qint64 before = m_value;
    setIntegerValue(m_value + m_pressed * m_increment);
    if (m_value != before)
        emit clicked();
}

void Stepper::mousePressEvent(QMouseEvent* event)
{
    if (!isEnabled() || event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_pressed = event->position().y() < height() / 2.0 ? 1 : -1;
    step();
    m_repeat.start(FirstRepeatMilliseconds);
    update();
}

void Stepper::mouseReleaseEvent(QMouseEvent* event)
{
    m_repeat.stop();
    m_pressed = 0;
    update();
    QWidget::mouseReleaseEvent(event);
}

void Stepper::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::EnabledChange && !isEnabled()) {
        m_repeat.stop();
        m_pressed = 0;
    }
    QWidget::changeEvent(event);
}

void Stepper::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath outline;
    outline.addRoundedRect(frame, 3, 3);
    painter.fillPath(outline, Qt::white);
    const QRectF upper(frame.left(), frame.top(), frame.width(), frame.height() / 2);
    const QRectF lower(frame.left(), frame.center().y(), frame.width(), frame.height() / 2);
    if (m_pressed != 0) {
        painter.save();
        painter.setClipPath(outline);
        painter.fillRect(m_pressed > 0 ? upper : lower, QColor::fromRgbF(0, 0, 0, 0.1f));
        painter.restore();
    }
    const QColor lines = VLRColors::grey(206);
    painter.setPen(QPen(lines, 1));
    painter.drawPath(outline);
    painter.drawLine(QPointF(frame.left() + 3, frame.center().y()), QPointF(frame.right() - 3, frame.center().y()));
    const QColor arrows = isEnabled() ? VLRColors::textColor() : VLRColors::grey(206);
    painter.setPen(QPen(arrows, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(arrow(upper, true));
    painter.drawPath(arrow(lower, false));
}
