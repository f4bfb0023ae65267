#pragma once

#include <QProxyStyle>

// Check boxes in the program's look: a white box with a light frame, filled
// with the accent colour and a white tick when on. Everything else is the
// desktop's style.
class CheckBoxStyle : public QProxyStyle
{
    Q_OBJECT

public:
    CheckBoxStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr,
                    const QWidget* widget = nullptr) const override;
};
