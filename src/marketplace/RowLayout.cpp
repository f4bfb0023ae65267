#include "marketplace/RowLayout.h"

#include "widgets/VLRTextField.h"
#include "widgets/VLRView.h"
#include "widgets/VLRViewAdditions.h"

namespace {

constexpr qreal CardInset = 8;
constexpr qreal TextLeft = 96;
constexpr qreal TextRightInset = 112;
constexpr qreal TextHeight = 17;
constexpr qreal ActionRightInset = 20;
// Between a text and the action beside it.
constexpr qreal ActionGap = 8;

} // namespace

void RowLayout::pin(QWidget* item, int attribute, QWidget* to, int toAttribute, qreal constant)
{
    vlr_setTranslatesAutoresizingMaskIntoConstraints(item, false);
    vlr_addConstraint(m_root, {item, VLRLayoutAttribute(attribute), to, VLRLayoutAttribute(toAttribute), constant});
}

VLRView* RowLayout::card(const QColor& lineColour)
{
    auto* card = new VLRView(m_root);
    card->setBackgroundColor(lineColour);
    pin(card, VLRLayoutAttributeLeft, m_root, VLRLayoutAttributeLeft, CardInset);
    pin(card, VLRLayoutAttributeRight, m_root, VLRLayoutAttributeRight, -CardInset);
    pin(card, VLRLayoutAttributeTop, m_root, VLRLayoutAttributeTop, 0);
    pin(card, VLRLayoutAttributeBottom, m_root, VLRLayoutAttributeBottom, 0);
    return card;
}

VLRView* RowLayout::cardFace(VLRView* card)
{
    auto* face = new VLRView(m_root);
    face->setBackgroundColor(Qt::white);
    pin(face, VLRLayoutAttributeLeft, card, VLRLayoutAttributeLeft, 1);
    pin(face, VLRLayoutAttributeRight, card, VLRLayoutAttributeRight, -1);
    pin(face, VLRLayoutAttributeTop, card, VLRLayoutAttributeTop, 1);
    pin(face, VLRLayoutAttributeBottom, card, VLRLayoutAttributeBottom, -1);
    return face;
}

void RowLayout::placeIcon(QWidget* icon)
{
    pin(icon, VLRLayoutAttributeLeft, m_root, VLRLayoutAttributeLeft, 22);
    pin(icon, VLRLayoutAttributeWidth, nullptr, VLRLayoutAttributeNotAnAttribute, 64);
    pin(icon, VLRLayoutAttributeHeight, nullptr, VLRLayoutAttributeNotAnAttribute, 64);
    pin(icon, VLRLayoutAttributeCenterY, m_root, VLRLayoutAttributeCenterY, 0);
}

VLRTextField* RowLayout::textField(const QFont& font, const QColor& colour, Qt::Alignment alignment)
{
    auto* field = new VLRTextField(m_root);
    field->setAttributedStringValue({QString(""), font, colour, alignment, Qt::ElideMiddle});
    return field;
}

void RowLayout::stackTexts(const QList<VLRTextField*>& fields, qreal top, bool wide)
{
    stackTextsTo(fields, top, wide ? ActionRightInset : TextRightInset);
}

void RowLayout::stackTextsBeside(const QList<VLRTextField*>& fields, qreal top, qreal actionWidth)
{
    stackTextsTo(fields, top, ActionRightInset + actionWidth + ActionGap);
}

void RowLayout::stackTextsTo(const QList<VLRTextField*>& fields, qreal top, qreal rightInset)
{
    QWidget* above = nullptr;
    for (VLRTextField* field : fields) {
        if (above)
            pin(field, VLRLayoutAttributeTop, above, VLRLayoutAttributeBottom, 0);
        else
            pin(field, VLRLayoutAttributeTop, m_root, VLRLayoutAttributeTop, top);
        pin(field, VLRLayoutAttributeLeft, m_root, VLRLayoutAttributeLeft, TextLeft);
        pin(field, VLRLayoutAttributeRight, m_root, VLRLayoutAttributeRight, -rightInset);
        pin(field, VLRLayoutAttributeHeight, nullptr, VLRLayoutAttributeNotAnAttribute, TextHeight);
        above = field;
    }
}

void RowLayout::placeAction(QWidget* action, const QSize& size, qreal verticalOffset)
{
    pin(action, VLRLayoutAttributeRight, m_root, VLRLayoutAttributeRight, -ActionRightInset);
    pin(action, VLRLayoutAttributeWidth, nullptr, VLRLayoutAttributeNotAnAttribute, size.width());
    pin(action, VLRLayoutAttributeHeight, nullptr, VLRLayoutAttributeNotAnAttribute, size.height());
    pin(action, VLRLayoutAttributeCenterY, m_root, VLRLayoutAttributeCenterY, verticalOffset);
}
