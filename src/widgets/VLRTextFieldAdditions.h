#pragma once

#include "widgets/VLRAttributedString.h"

#include <QRectF>
#include <QSizeF>
#include <QString>

class QWidget;
class VLRTextField;

// Labels centred on a frame by arithmetic rather than by a layout, and the
// measure of a text laid out on its own.

// "Muli" 12, truncated in the middle when too long, with the given alignment;
// centred with vertical offset 1.
VLRTextField* vlr_labelCenteredInFrameStringAlignment(const QRectF& frame, const QString& string,
                                                      Qt::Alignment alignment, QWidget* parent = nullptr);

// As above, not truncated: the font shrinks a point at a time from 12 until
// the text fits the frame's width.
VLRTextField* vlr_labelScalingFontCenteredInFrameStringAlignment(const QRectF& frame, const QString& string,
                                                                 Qt::Alignment alignment, QWidget* parent = nullptr);

// The field has the frame's x and width and the text's height; its y is
// 0.5 × frame height − 0.5 × text height + frame y + offset, not rounded.
VLRTextField* vlr_labelCenteredInFrameAttributedStringVerticalOffset(const QRectF& frame,
                                                                     const VLRAttributedString& string,
                                                                     qreal verticalOffset, QWidget* parent = nullptr);

// The size the text takes when laid out alone, without wrapping or
// hyphenation.
QSizeF layoutSizeForAttributedString(const VLRAttributedString& string);
