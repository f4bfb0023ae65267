#pragma once

#include <QFont>
#include <QString>

// The program's typeface. The design asks for "Muli", the former name of the
// Mulish family, whose files are compiled into the program under ":/fonts/".
// Loading registers them with the font database and makes "Muli" a
// substitute name for the family, so that QFont("Muli") finds it.
class VLRFonts
{
public:
    // Registers the font files once; later calls answer at once. Returns the
    // family the files registered, or a null string when none could be loaded
    // (then QFont("Muli") falls back to the platform's default face).
    static QString loadMuli();

    // Makes Muli 12 the program's default face, also for the widgets whose
    // face a desktop's theme chooses apart (menus, the lists that drop down
    // from pop-up buttons), so that no text of the program falls back to the
    // desktop's own.
    static void useMuliThroughout();

    // The typeface at a size of the design. The design's sizes are points of
    // a screen at one pixel a point, so the size is taken as logical pixels:
    // 12 is the body text, 11 the badges.
    static QFont muli(qreal pointSize, QFont::Weight weight = QFont::Normal);
};
