#include "widgets/VLRFonts.h"

#include <QFontDatabase>
#include <QFontInfo>

#include <gmock/gmock.h>

TEST(Fonts, MuliIsLoadedOnceAndComesAtTheDesignSizeInTheBundledWeights)
{
    const QString family = VLRFonts::loadMuli();
    EXPECT_EQ(family.toStdString(), "Mulish");
    EXPECT_EQ(VLRFonts::loadMuli(), family);
    EXPECT_EQ(QFontDatabase::families().count("Mulish"), 1);

    // Code that asks for the design's name by hand gets the bundled face.
    EXPECT_EQ(QFontInfo(QFont("Muli")).family().toStdString(), "Mulish");

    const QFont body = VLRFonts::muli(12);
    EXPECT_EQ(QFontInfo(body).family().toStdString(), "Mulish");
    EXPECT_EQ(QFontInfo(body).pixelSize(), 12);

    // The weights are the bundled faces, not the regular one emboldened.
    const QFont badge = VLRFonts::muli(11, QFont::Bold);
    EXPECT_EQ(QFontInfo(body).styleName().toStdString(), "Regular");
    EXPECT_EQ(QFontInfo(badge).styleName().toStdString(), "Bold");
    EXPECT_EQ(QFontInfo(VLRFonts::muli(12, QFont::DemiBold)).styleName().toStdString(), "SemiBold");

    EXPECT_EQ(VLRFonts::muli(0.2).pixelSize(), 1);
    EXPECT_EQ(VLRFonts::muli(11.6).pixelSize(), 12);
}
