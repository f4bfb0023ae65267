#include "widgets/VLRFonts.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFontDatabase>
#include <QFontInfo>
#include <QMenu>

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

TEST(Fonts, MenusAndDropDownListsAreMuliWhateverFaceTheDesktopGivesThem)
{
    const QFont before = QApplication::font();
    // A desktop theme with faces of its own for menus and drop-down lists.
    const QFont themed("DejaVu Serif", 15);
    QApplication::setFont(themed, "QMenu");
    QApplication::setFont(themed, "QComboMenuItem");
    VLRFonts::useMuliThroughout();

    QMenu menu;
    menu.addAction("Open Veluria");
    EXPECT_EQ(QFontInfo(menu.font()).family().toStdString(), "Mulish");

    // An item of the list draws as one that asks for Muli itself.
    QComboBox popUp;
    popUp.addItems({"staging.veluria.com", "staging.veluria.com"});
    popUp.setItemData(1, VLRFonts::muli(12), Qt::FontRole);
    QStyleOptionViewItem option;
    option.initFrom(popUp.view());
    QAbstractItemDelegate* items = popUp.view()->itemDelegate();
    const QAbstractItemModel* model = popUp.model();
    EXPECT_EQ(items->sizeHint(option, model->index(0, 0)), items->sizeHint(option, model->index(1, 0)));

    QApplication::setFont(before);
}
