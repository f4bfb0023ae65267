#pragma once

#include <QIcon>
#include <QPixmap>
#include <QSize>
#include <QString>

// The program's pictures, looked up by asset name. Each name is a vector
// drawing compiled into the program as ":/images/<name>.svg"; a name ending in
// ".pdf" (the full-page pictures) finds the drawing of the name without that
// ending. Pictures are rendered at the pixel density of the screen they go to,
// and every rendering is kept for the next request of the same name, size and
// density. GUI thread only.
class VLRImageCatalogue
{
public:
    static bool hasImageNamed(const QString& name);

    // The picture rendered to fill logicalSize (in logical pixels) at the
    // given device pixel ratio; the pixmap carries that ratio. An invalid or
    // empty size means the picture's natural size. A name that has no picture
    // is logged once and gives a null pixmap.
    static QPixmap imageNamed(const QString& name, const QSize& logicalSize, qreal devicePixelRatio);

    // At its natural size, for the application's device pixel ratio.
    static QPixmap imageNamed(const QString& name);

    // An icon that renders the drawing afresh for every size and density it is
    // asked for; disabled icons are drawn faded. A null icon for an unknown name.
    static QIcon iconNamed(const QString& name);

    // The size the picture is drawn for, in logical pixels; an invalid size for
    // an unknown name.
    static QSize naturalSize(const QString& name);

    // The resource path of a name's drawing: ":/images/<name>.svg".
    static QString resourcePathForName(const QString& name);
};
