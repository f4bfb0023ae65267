#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QImage>

// A small picture of one colour, as PNG bytes.
inline QByteArray pngOf(const QColor& colour)
{
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(colour);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return png;
}
