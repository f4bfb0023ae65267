#pragma once

#include "widgets/VLRAttributedString.h"

#include <QList>
#include <QSize>

class QWidget;
class VLRTextField;
class VLRView;

// The card that the marketplace's rows share, placed by constraints that the
// row's root view holds, so that it follows the row's width: a thin line
// round a white face, an icon on the left, a column of texts and the actions
// on the right.
class RowLayout
{
public:
    explicit RowLayout(VLRView* root)
        : m_root(root)
    { }

    // The card's line, eight points in from either side, the row's full height.
    VLRView* card(const QColor& lineColour);
    // The face inside the line, one point in, white unless recoloured.
    VLRView* cardFace(VLRView* card);
    // 64 by 64, left, centred in height.
    void placeIcon(QWidget* icon);
    // A text field on the card, in that font and colour, not yet placed.
    VLRTextField* textField(const QFont& font, const QColor& colour, Qt::Alignment alignment = Qt::AlignLeft);
    // One under the other from that top, between the icon and the actions
    // (or, with wide, the card's right edge); the first one's top is a
    // constraint to the root's top.
    void stackTexts(const QList<VLRTextField*>& fields, qreal top, bool wide = false);
    // The same beside one action of that width alone, so that long texts
    // (a date in a long style) keep all the room it leaves.
    void stackTextsBeside(const QList<VLRTextField*>& fields, qreal top, qreal actionWidth);
    // At the right, centred in height but for the offset.
    void placeAction(QWidget* action, const QSize& size, qreal verticalOffset);

private:
    void stackTextsTo(const QList<VLRTextField*>& fields, qreal top, qreal rightInset);
    void pin(QWidget* item, int attribute, QWidget* to, int toAttribute, qreal constant);

    VLRView* m_root;
};
