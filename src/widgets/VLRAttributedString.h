#pragma once

#include <QColor>
#include <QFont>
#include <QSizeF>
#include <QString>

// Text with one set of attributes for its whole length: the kit's titles and
// labels never mix styles, so the attributes at index 0 are the attributes of
// all of it.
struct VLRAttributedString
{
    QString string;
    QFont font;
    QColor foregroundColor = Qt::black;
    Qt::Alignment alignment = Qt::AlignLeft;
    // Qt::ElideNone clips; Qt::ElideMiddle truncates in the middle.
    Qt::TextElideMode lineBreakMode = Qt::ElideNone;

    // The size the text asks for by its font: the widest line, and one whole
    // line height a line, also for an empty text.
    QSizeF size() const;

    bool operator==(const VLRAttributedString&) const = default;
};
