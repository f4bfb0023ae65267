#pragma once

#include <QColor>

// The program's calibrated colours, as components of 255. The accent, badge
// and error colours are the flavour's; the kit keeps them here so that it
// stands without the application shell.
class VLRColors
{
public:
    // A calibrated grey: 233 pages and dark rows, 250 light rows, 151 borders
    // and secondary text, 206 thin card lines.
    static QColor grey(int level) { return QColor::fromRgbF(level / 255.0f, level / 255.0f, level / 255.0f); }

    // Body text, red and green 88, blue 91.
    static QColor textColor() { return QColor::fromRgbF(88 / 255.0f, 88 / 255.0f, 91 / 255.0f); }

    // Hexadecimal F26723.
    static QColor mainAppColor() { return QColor::fromRgbF(242 / 255.0f, 103 / 255.0f, 35 / 255.0f); }

    // Hexadecimal E78169: the fill of count badges.
    static QColor badgeColor() { return QColor::fromRgbF(231 / 255.0f, 129 / 255.0f, 105 / 255.0f); }

    // The badge colour again, for fields that failed validation.
    static QColor errorColor() { return badgeColor(); }
};
