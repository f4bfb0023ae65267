#include "signin/EnvironmentPopUp.h"

#include "app/VLRColors.h"
#include "widgets/VLRFonts.h"

#include <QAbstractItemView>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int Height = 26;
constexpr qreal Padding = 9;
constexpr qreal ChevronWidth = 8;

} // namespace

EnvironmentPopUp::EnvironmentPopUp(QWidget* parent)
    : QComboBox(parent)
{
    setFont(VLRFonts::muli(12));
    setFixedHeight(Height);
    setCursor(Qt::PointingHandCursor);
    QPalette list = view()->palette();
    list.setColor(QPalette::Base, Qt::white);
    list.setColor(QPalette::Text, VLRColors::textColor());
    list.setColor(QPalette::Highlight, VLRColors::mainAppColor());
    list.setColor(QPalette::HighlightedText, Qt::white);
    view()->setPalette(list);
    view()->setFont(font());
}

void EnvironmentPopUp::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(hasFocus() ? VLRColors::mainAppColor() : VLRColors::grey(206), 1));
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(frame, 3, 3);

    const QColor ink = isEnabled() ? VLRColors::textColor() : VLRColors::grey(151);
    const QRectF textRect = frame.adjusted(Padding, 0, -(2 * Padding + ChevronWidth), 0);
    painter.setPen(ink);
    painter.setFont(font());
    painter.drawText(textRect, Qt::AlignVCenter | Qt::AlignLeft,
                     fontMetrics().elidedText(currentText(), Qt::ElideMiddle, int(textRect.width())));

    const QPointF centre(frame.right() - Padding - ChevronWidth / 2, frame.center().y());
    QPainterPath chevron;
    chevron.moveTo(centre.x() - ChevronWidth / 2, centre.y() - 2);
    chevron.lineTo(centre.x(), centre.y() + 2);
    chevron.lineTo(centre.x() + ChevronWidth / 2, centre.y() - 2);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(ink, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(chevron);
}
