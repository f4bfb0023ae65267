#include "widgets/VLRAvatarListView.h"
#include "widgets/VLRBadgeView.h"
#include "widgets/VLRColors.h"
#include "widgets/VLRLevelView.h"

#include <QImage>

#include <gmock/gmock.h>

#include <cmath>

namespace {

void tick(VLRLevelView& view)
{
    ASSERT_TRUE(QMetaObject::invokeMethod(&view, "__smoothingTimer"));
}

QList<VLRAvatar> members(int count)
{
    QList<VLRAvatar> avatars;
    for (int i = 1; i <= count; ++i) {
        QPixmap picture(20, 20);
        picture.fill(QColor(10 * i % 255, 100, 150));
        avatars.append(VLRAvatar(picture, QStringLiteral("Member %1").arg(i)));
    }
    return avatars;
}

QStringList toolTips(const QList<VLRAvatarListView::Slot>& slotList)
{
    QStringList tips;
    for (const VLRAvatarListView::Slot& slot : slotList)
        tips.append(slot.avatar.toolTip());
    return tips;
}

} // namespace

TEST(BadgeView, BubbleWidthFollowsTheDigitsAndHundredsRead99Plus)
{
    VLRBadgeView badge(QRectF(0, 0, 26, 30));
    EXPECT_EQ(badge.color(), VLRColors::badgeColor());
    const struct
    {
        qint64 value;
        qreal width;
        const char* text;
    } cases[] = {{1, 16, "1"}, {9, 16, "9"}, {10, 21, "10"}, {99, 21, "99"}, {100, 26, "99+"}, {4711, 26, "99+"}};
    for (const auto& c : cases) {
        badge.setBadgeValue(c.value);
        EXPECT_EQ(badge.ellipseRect(), QRectF(0, 7, c.width, 16)) << c.value;
        EXPECT_EQ(badge.badgeText().toStdString(), c.text);
    }
    EXPECT_EQ(badge.layer(), nullptr);

    // Bubble drawn in the badge colour, centred in height.
    badge.setBadgeValue(5);
    QImage image(26, 30, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    badge.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    EXPECT_EQ(image.pixelColor(2, 15).rgb(), VLRColors::badgeColor().rgb());
    EXPECT_EQ(image.pixelColor(8, 3).alpha(), 0);
    EXPECT_EQ(image.pixelColor(20, 15).alpha(), 0);
}

TEST(BadgeView, WarningShowsTheTriangleOnlyWithAPositiveValue)
{
    VLRBadgeView badge(QRectF(0, 0, 16, 16));
    badge.setIsWarning(true);
    // Value 0: an empty view.
    EXPECT_EQ(badge.layer(), nullptr);
    badge.setBadgeValue(3);
    ASSERT_NE(badge.layer(), nullptr);
    EXPECT_FALSE(badge.layer()->contents.isNull());

    QImage image(16, 16, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    badge.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    // The triangle's orange, no bubble and no number.
    const QColor middle = image.pixelColor(8, 12);
    EXPECT_NE(middle.rgb(), VLRColors::badgeColor().rgb());
    EXPECT_GT(image.pixelColor(3, 13).alpha(), 200);

    badge.setIsWarning(false);
    EXPECT_EQ(badge.layer(), nullptr);
}

TEST(LevelView, RisesByFivePerCentOfTheDistanceAndFallsAtOnce)
{
    VLRLevelView view;
    EXPECT_TRUE(view.smoothingTimer()->isActive());
    EXPECT_EQ(view.smoothingTimer()->interval(), 30);
    EXPECT_EQ(view.minValue(), 0);
    EXPECT_EQ(view.maxValue(), 1000);

    view.setIntegerValue(1000);
    EXPECT_EQ(view.smoothedValue(), 0); // setting draws and moves nothing
    tick(view);
    EXPECT_DOUBLE_EQ(view.smoothedValue(), 50);
    tick(view);
    EXPECT_DOUBLE_EQ(view.smoothedValue(), 97.5);
    for (int i = 0; i < 200; ++i)
        tick(view);
    EXPECT_NEAR(view.smoothedValue(), 1000, 0.1);

    view.setIntegerValue(120);
    tick(view);
    EXPECT_EQ(view.smoothedValue(), 120);
}

TEST(LevelView, BarTakesItsWidthFromTheWholeRectangle)
{
    VLRLevelView view;
    view.resize(200, 20);
    view.setBackgroundColor(Qt::white);
    view.setBorderWidth(0);
    view.setBarColor(Qt::blue);
    view.setIntegerValue(500);
    view.setMaxValue(1000);
    for (int i = 0; i < 400; ++i)
        ASSERT_TRUE(QMetaObject::invokeMethod(&view, "__smoothingTimer"));
    QImage image(200, 20, QImage::Format_ARGB32);
    view.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    // Half of 200 from the inset of 2: 2 to 102.
    EXPECT_EQ(image.pixelColor(1, 10), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(3, 10), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(101, 10), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(103, 10), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(50, 1), QColor(Qt::white));

    // An empty scale draws no bar and does not fail.
    view.setMinValue(1000);
    image.fill(Qt::black);
    view.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    EXPECT_EQ(image.pixelColor(50, 10), QColor(Qt::white));
}

TEST(AvatarListView, CapacityEllipsisAndItsToolTip)
{
    VLRAvatarListView view;
    view.resize(80, 20); // w = 4h: (80 + 5) / 25 = 3.4
    EXPECT_EQ(view.capacity(), 3);
    EXPECT_TRUE(view.avatarSlots().isEmpty());

    // Three fit: all show, in order, a quarter of the height apart.
    view.setAvatars(members(3));
    QList<VLRAvatarListView::Slot> slotList = view.avatarSlots();
    ASSERT_EQ(slotList.size(), 3);
    EXPECT_EQ(toolTips(slotList), QStringList({"Member 1", "Member 2", "Member 3"}));
    EXPECT_EQ(slotList.at(0).frame, QRectF(0, 0, 20, 20));
    EXPECT_EQ(slotList.at(1).frame, QRectF(25, 0, 20, 20));
    EXPECT_EQ(slotList.at(2).frame, QRectF(50, 0, 20, 20));

    // Four: the ellipsis first, then the first two; its tip names the rest.
    view.setAvatars(members(4));
    slotList = view.avatarSlots();
    ASSERT_EQ(slotList.size(), 3);
    EXPECT_EQ(toolTips(slotList), QStringList({"Member 3\nMember 4", "Member 1", "Member 2"}));
    EXPECT_FALSE(slotList.at(0).avatar.image().isNull());

    // Thirty: twenty names, one a line, then the count of the others.
    view.setAvatars(members(30));
    slotList = view.avatarSlots();
    ASSERT_EQ(slotList.size(), 3);
    QStringList expected;
    for (int i = 3; i <= 22; ++i)
        expected.append(QStringLiteral("Member %1").arg(i));
    EXPECT_EQ(slotList.at(0).avatar.toolTip(), expected.join('\n') + "\n+ 8 more");

    // Exactly twenty left out: all named, no count.
    view.setAvatars(members(22));
    EXPECT_EQ(view.avatarSlots().at(0).avatar.toolTip(), expected.mid(0, 20).join('\n'));
    view.setAvatars(members(23));
    EXPECT_EQ(view.avatarSlots().at(0).avatar.toolTip(), expected.join('\n') + "\n+ 1 more");

    // Too narrow for one picture: nothing shows, nothing fails.
    view.resize(15, 20);
    EXPECT_EQ(view.capacity(), 0);
    EXPECT_TRUE(view.avatarSlots().isEmpty());
    // One picture's room: with more members, only the ellipsis.
    view.resize(20, 20);
    EXPECT_EQ(view.capacity(), 1);
    view.setAvatars(members(2));
    EXPECT_EQ(toolTips(view.avatarSlots()), QStringList({"Member 1\nMember 2"}));
}

TEST(AvatarListView, DrawsRoundPictures)
{
    VLRAvatarListView view;
    view.resize(45, 20);
    QPixmap red(20, 20);
    red.fill(Qt::red);
    view.setAvatars({VLRAvatar(red, "Ada"), VLRAvatar(red, "Grace")});
    QImage image(45, 20, QImage::Format_ARGB32);
    image.fill(Qt::white);
    view.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    EXPECT_EQ(image.pixelColor(10, 10), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(35, 10), QColor(Qt::red));
    // The corners stay clear: the pictures are circles.
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(25, 19), QColor(Qt::white));
}
