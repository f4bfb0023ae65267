#include "widgets/VLRLabel.h"

#include <cmath>

VLRLabel::VLRLabel(QWidget* parent)
    : VLRTextField(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

VLRLabel* VLRLabel::labelCenteredInFrameAttributedStringVerticalOffset(const QRectF& frame,
                                                                       const VLRAttributedString& string,
                                                                       qreal verticalOffset, QWidget* parent)
{
    auto* label = new VLRLabel(parent);
    label->setAttributedStringValue(string);
    label->setFrame(labelFrameCenteredInFrame(frame, string, verticalOffset));
    return label;
}

QRectF VLRLabel::labelFrameCenteredInFrame(const QRectF& frame, const VLRAttributedString& string, qreal verticalOffset)
{
    const qreal height = string.size().height() - verticalOffset;
    const qreal y = 0.5 * frame.height() - 0.5 * height + frame.y() + verticalOffset;
    return QRectF(frame.x(), std::roundf(float(y)), frame.width(), height);
}
