#include "widgets/CheckBoxStyle.h"

#include "app/VLRColors.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleFactory>
#include <QStyleOption>

namespace {

constexpr int IndicatorSize = 16;

} // namespace

CheckBoxStyle::CheckBoxStyle()
    : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion")))
{ }

int CheckBoxStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    if (metric == PM_IndicatorWidth || metric == PM_IndicatorHeight)
        return IndicatorSize;
    if (metric == PM_CheckBoxLabelSpacing)
        return 8;
    return QProxyStyle::pixelMetric(metric, option, widget);
}

void CheckBoxStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const
{
    if (element != PE_IndicatorCheckBox) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    const bool on = option->state & State_On;
    const bool enabled = option->state & State_Enabled;
    QColor accent = VLRColors::mainAppColor();
    if (!enabled)
        accent.setAlphaF(0.45f);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    painter->setPen(QPen(on ? accent : VLRColors::grey(enabled ? 151 : 206), 1));
    painter->setBrush(on ? QBrush(accent) : QBrush(Qt::white));
    painter->drawRoundedRect(box, 3, 3);
    if (on) {
        QPainterPath tick;
        tick.moveTo(box.left() + box.width() * 0.25, box.top() + box.height() * 0.52);
        tick.lineTo(box.left() + box.width() * 0.43, box.top() + box.height() * 0.70);
        tick.lineTo(box.left() + box.width() * 0.76, box.top() + box.height() * 0.32);
        painter->setBrush(Qt::NoBrush);
        painter->setPen(QPen(Qt::white, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->drawPath(tick);
    }
    painter->restore();
}
