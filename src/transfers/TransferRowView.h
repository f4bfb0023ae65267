#pragma once

#include <QColor>
#include <QList>
#include <QRectF>
#include <QString>

// One column's cell of a transfer row, as the row last built it: what the
// table paints there and where the hover buttons take clicks. Frames are in
// the cell's own coordinates.
struct TransferRowView
{
    enum class Action { Cancel, Pause, Resume, Retry };

    struct Button
    {
        Action action = Action::Cancel;
        QString imageName;
        // Shown while the button is under the pointer; none for most.
        QString alternateImageName;
        QRectF frame;
        bool hidden = false;
    };

    QRectF frame;
    QColor backgroundColor;
    // The failure, told while the pointer rests anywhere on the row.
    QString toolTip;
    // A picture, 15 by 15 centred on the cell; none for a text cell.
    QString imageName;
    QRectF imageFrame;
    QString text;
    // Where the text is centred: the whole cell, but beside a retry button
    // that shows with it.
    QRectF textFrame;
    QColor textColor;
    Qt::Alignment alignment = Qt::AlignLeft;
    // Long texts shrink their font rather than lose their middle.
    bool scalesFont = false;
    bool textHidden = false;
    // In the order they are added: a later one lies on top of an earlier one.
    QList<Button> buttons;
};
