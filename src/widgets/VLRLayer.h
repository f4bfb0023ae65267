#pragma once

#include <QColor>
#include <QPixmap>
#include <QRectF>

class QPainter;

// What a view shows behind its own drawing: a background colour, a picture
// stretched over the bounds, and a border drawn inside the bounds, all with
// rounded corners. A view has one only once something asked for it.
struct VLRLayer
{
    QColor backgroundColor; // invalid: none
    QPixmap contents;
    QColor borderColor = Qt::black;
    qreal borderWidth = 0;
    qreal cornerRadius = 0;

    // The background and the picture.
    void paintBackground(QPainter& painter, const QRectF& bounds) const;
    // The border, which lies over everything else the view draws.
    void paintBorder(QPainter& painter, const QRectF& bounds) const;
};
