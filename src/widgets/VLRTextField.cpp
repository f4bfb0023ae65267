#include "widgets/VLRTextField.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStringList>

#include <cmath>

VLRTextField::VLRTextField(QWidget* parent)
    : QWidget(parent)
{ }

void VLRTextField::setFrame(const QRectF& frame)
{
    m_frame = frame;
    setGeometry(frame.toRect());
}

void VLRTextField::setAttributedStringValue(const VLRAttributedString& value)
{
    if (m_value == value)
        return;
    m_value = value;
    updateGeometry();
    update();
}

void VLRTextField::setStringValue(const QString& string)
{
    VLRAttributedString value = m_value;
    value.string = string;
    setAttributedStringValue(value);
}

void VLRTextField::setTextColor(const QColor& color)
{
    VLRAttributedString value = m_value;
    value.foregroundColor = color;
    setAttributedStringValue(value);
}

QSize VLRTextField::sizeHint() const
{
    const QSizeF size = m_value.size();
    return QSize(int(std::ceil(size.width())), int(std::ceil(size.height())));
}

void VLRTextField::paintEvent(QPaintEvent*)
{
    if (m_value.string.isEmpty())
        return;
    QPainter painter(this);
    painter.setFont(m_value.font);
    painter.setPen(m_value.foregroundColor);
    const QFontMetricsF metrics(m_value.font);
    QStringList lines = m_value.string.split(QLatin1Char('\n'));
    if (m_value.lineBreakMode != Qt::ElideNone) {
        for (QString& line : lines)
            line = metrics.elidedText(line, m_value.lineBreakMode, width());
    }
    // The text keeps to the edge of the field away from its origin; a field
    // made taller than its text leaves the room on the origin's side.
    painter.drawText(QRectF(rect()), int(m_value.alignment & Qt::AlignHorizontal_Mask) | Qt::AlignBottom,
                     lines.join(QLatin1Char('\n')));
}
