#pragma once

#include "widgets/VLRAttributedString.h"

#include <QRectF>
#include <QWidget>

// A text field that only shows its text: no border, no background, not
// editable. It keeps its frame in fractions of a point, as the centring
// arithmetic gives it, and sits on the nearest whole pixels.
class VLRTextField : public QWidget
{
    Q_OBJECT

public:
    explicit VLRTextField(QWidget* parent = nullptr);

    QRectF frame() const { return m_frame; }
    void setFrame(const QRectF& frame);

    const VLRAttributedString& attributedStringValue() const { return m_value; }
    void setAttributedStringValue(const VLRAttributedString& value);

    // A new text in the attributes the field already has.
    QString stringValue() const { return m_value.string; }
    void setStringValue(const QString& string);

    void setTextColor(const QColor& color);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRectF m_frame;
    VLRAttributedString m_value;
};
