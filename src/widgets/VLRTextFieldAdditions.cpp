#include "widgets/VLRTextFieldAdditions.h"

#include "widgets/VLRFonts.h"
#include "widgets/VLRTextField.h"

#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <limits>

namespace {

constexpr qreal kLabelFontSize = 12;
// Qt refuses a point size of 0 or less and keeps the size it had, so without
// a floor a text that fits at no size would hold the client in this loop.
constexpr qreal kSmallestFontSize = 1;

VLRAttributedString muliString(const QString& string, qreal pointSize, Qt::Alignment alignment)
{
    VLRAttributedString attributed;
    attributed.string = string;
    attributed.font = VLRFonts::muli(pointSize, QFont::Normal);
    attributed.alignment = alignment;
    return attributed;
}

} // namespace

VLRTextField* vlr_labelCenteredInFrameStringAlignment(const QRectF& frame, const QString& string,
                                                      Qt::Alignment alignment, QWidget* parent)
{
    VLRAttributedString attributed = muliString(string, kLabelFontSize, alignment);
    attributed.lineBreakMode = Qt::ElideMiddle;
    return vlr_labelCenteredInFrameAttributedStringVerticalOffset(frame, attributed, 1, parent);
}

VLRTextField* vlr_labelScalingFontCenteredInFrameStringAlignment(const QRectF& frame, const QString& string,
                                                                 Qt::Alignment alignment, QWidget* parent)
{
    qreal pointSize = kLabelFontSize;
    VLRAttributedString attributed = muliString(string, pointSize, alignment);
    while (layoutSizeForAttributedString(attributed).width() > frame.width() && pointSize > kSmallestFontSize) {
        pointSize -= 1;
        attributed = muliString(string, pointSize, alignment);
    }
    return vlr_labelCenteredInFrameAttributedStringVerticalOffset(frame, attributed, 1, parent);
}

VLRTextField* vlr_labelCenteredInFrameAttributedStringVerticalOffset(const QRectF& frame,
                                                                     const VLRAttributedString& string,
                                                                     qreal verticalOffset, QWidget* parent)
{
    const qreal height = string.size().height();
    auto* field = new VLRTextField(parent);
    field->setAttributedStringValue(string);
    field->setFrame(
        QRectF(frame.x(), 0.5 * frame.height() - 0.5 * height + frame.y() + verticalOffset, frame.width(), height));
    return field;
}

QSizeF layoutSizeForAttributedString(const VLRAttributedString& string)
{
    QString text = string.string;
    text.replace(QLatin1Char('\n'), QChar::LineSeparator);
    QTextLayout layout(text, string.font);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    qreal width = 0;
    qreal height = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::numeric_limits<float>::max());
        line.setPosition(QPointF(0, height));
        width = std::max(width, line.naturalTextWidth());
        height += line.height();
    }
    layout.endLayout();
    return QSizeF(width, height);
}
