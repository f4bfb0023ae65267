#pragma once

#include "widgets/VLRTextField.h"

// A text field that never takes a click: it lies over its button, and the
// button gets the click.
class VLRLabel : public VLRTextField
{
    Q_OBJECT

public:
    explicit VLRLabel(QWidget* parent = nullptr);

    // A label centred on the frame by arithmetic: the text's height less the
    // offset is the label's height, and its y, offset included, is rounded in
    // single precision.
    static VLRLabel* labelCenteredInFrameAttributedStringVerticalOffset(const QRectF& frame,
                                                                        const VLRAttributedString& string,
                                                                        qreal verticalOffset,
                                                                        QWidget* parent = nullptr);

    // The frame such a label gets.
    static QRectF labelFrameCenteredInFrame(const QRectF& frame, const VLRAttributedString& string,
                                            qreal verticalOffset);
};
