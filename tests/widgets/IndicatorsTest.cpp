#include "app/VLRColors.h"
#include "widgets/VLRAvatarListView.h"
#include "widgets/VLRBadgeView.h"
#include "widgets/VLRLevelView.h"
#include "widgets/WidgetTesting.h"

#include <gmock/gmock.h>

namespace {

QList<VLRAvatar> members(int count)
{
    QList<VLRAvatar> avatars;
    for (int i = 1; i <= count; ++i) {
        QPixmap picture(20, 20);
        picture.fill(Qt::red);
        avatars.append(VLRAvatar(picture, QStringLiteral("Member %1").arg(i)));
    }
    return avatars;
}

QStringList toolTips(const VLRAvatarListView& view)
{
    QStringList tips;
    for (const VLRAvatarListView::Slot& slot : view.avatarSlots())
        tips.append(slot.avatar.toolTip());
    return tips;
}

} // namespace

TEST(BadgeView, HundredsRead99PlusAndAWarningShowsOnlyTheTriangle)
{
    // The bubble's widths by digits are those that move a button's title.
    VLRBadgeView badge(QRectF(0, 0, 26, 30));
    badge.setBadgeValue(99);
    EXPECT_EQ(badge.badgeText(), "99");
    badge.setBadgeValue(100);
    EXPECT_EQ(badge.badgeText(), "99+");
    // The bubble in the badge colour, centred in height, and no triangle.
    badge.setBadgeValue(5);
    EXPECT_EQ(badge.ellipseRect(), QRectF(0, 7, 16, 16));
    QImage image = rendered(&badge, QRegion(), Qt::transparent);
    EXPECT_EQ(image.pixelColor(2, 15).rgb(), VLRColors::badgeColor().rgb());
    EXPECT_EQ(image.pixelColor(8, 3).alpha(), 0);
    EXPECT_EQ(image.pixelColor(20, 15).alpha(), 0);
    EXPECT_EQ(badge.layer(), nullptr);

    // A warning with value 0 is an empty view; with 3 the triangle, no bubble.
    VLRBadgeView warning(QRectF(0, 0, 16, 16));
    warning.setIsWarning(true);
    EXPECT_EQ(warning.layer(), nullptr);
    warning.setBadgeValue(3);
    ASSERT_NE(warning.layer(), nullptr);
    image = rendered(&warning, QRegion(), Qt::transparent);
    EXPECT_NE(image.pixelColor(8, 12).rgb(), VLRColors::badgeColor().rgb());
    EXPECT_GT(image.pixelColor(3, 13).alpha(), 200);
    warning.setIsWarning(false);
    EXPECT_EQ(warning.layer(), nullptr);
}

TEST(LevelView, RisesByFivePerCentOfTheDistanceFallsAtOnceAndMeasuresTheWholeRectangle)
{
    VLRLevelView view;
    view.resize(200, 20);
    view.setBackgroundColor(Qt::white);
    view.setBorderWidth(0);
    view.setBarColor(Qt::blue);
    // Thirty milliseconds a tick, from the start, for good.
    EXPECT_TRUE(view.smoothingTicker()->isActive());
    EXPECT_EQ(view.smoothingTicker()->interval(), 30);
    EXPECT_FALSE(view.smoothingTicker()->isSingleShot());
    view.setIntegerValue(1000);
    EXPECT_EQ(view.smoothedValue(), 0); // setting moves nothing
    invokeTimes(&view, "smoothingTimer");
    EXPECT_DOUBLE_EQ(view.smoothedValue(), 50);
    invokeTimes(&view, "smoothingTimer");
    EXPECT_DOUBLE_EQ(view.smoothedValue(), 97.5);
    invokeTimes(&view, "smoothingTimer", 200);
    view.setIntegerValue(500);
    invokeTimes(&view, "smoothingTimer");
    EXPECT_EQ(view.smoothedValue(), 500);

    // Half of the whole 200, from the inset of 2: 2 to 102.
    QImage image = rendered(&view, QRegion(), Qt::black);
    EXPECT_EQ(image.pixelColor(1, 10), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(3, 10), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(101, 10), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(103, 10), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(50, 1), QColor(Qt::white));
    // An empty scale draws no bar and does not fail.
    view.setMinValue(1000);
    image = rendered(&view, QRegion(), Qt::black);
    EXPECT_EQ(image.pixelColor(50, 10), QColor(Qt::white));
}

TEST(AvatarListView, CapacityEllipsisAndAToolTipOfTwentyNames)
{
    VLRAvatarListView view;
    view.resize(80, 20); // w = 4h: (80 + 5) / 25 = 3.4
    EXPECT_EQ(view.capacity(), 3);
    // Three fit: all show, in order, round, a quarter of the height apart.
    view.setAvatars(members(3));
    EXPECT_EQ(toolTips(view), QStringList({"Member 1", "Member 2", "Member 3"}));
    EXPECT_EQ(view.avatarSlots().at(2).frame, QRectF(50, 0, 20, 20));
    const QImage image = rendered(&view);
    EXPECT_EQ(image.pixelColor(10, 10), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(35, 10), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(25, 19), QColor(Qt::white));

    // Four: the ellipsis first, then the first two; its tip names the rest.
    view.setAvatars(members(4));
    EXPECT_EQ(toolTips(view), QStringList({"Member 3\nMember 4", "Member 1", "Member 2"}));
    EXPECT_FALSE(view.avatarSlots().at(0).avatar.image().isNull());
    // Thirty: twenty names, one a line, then the count of the others; with
    // exactly twenty left out, all named and no count.
    QStringList names;
    for (int i = 3; i <= 22; ++i)
        names.append(QStringLiteral("Member %1").arg(i));
    view.setAvatars(members(30));
    EXPECT_EQ(toolTips(view).value(0), names.join('\n') + "\n+ 8 more");
    view.setAvatars(members(22));
    EXPECT_EQ(toolTips(view).value(0), names.join('\n'));

    // A drawing lays the list over what was drawn before: after three, a
    // list of one still shows the second and third pictures.
    view.setAvatars(members(3));
    rendered(&view);
    view.setAvatars(members(1));
    const QImage stacked = rendered(&view);
    EXPECT_EQ(view.shownSlots().size(), 3);
    EXPECT_EQ(view.shownSlots().at(2).avatar.toolTip(), "Member 3");
    EXPECT_EQ(stacked.pixelColor(60, 10), QColor(Qt::red));

    // Too narrow for one picture: nothing shows, nothing fails. Room for one
    // and more members: only the ellipsis.
    view.resize(15, 20);
    EXPECT_TRUE(view.avatarSlots().isEmpty());
    view.resize(20, 20);
    view.setAvatars(members(2));
    EXPECT_EQ(toolTips(view), QStringList({"Member 1\nMember 2"}));
}
