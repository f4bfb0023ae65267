#include "app/VLRColors.h"
#include "widgets/VLRBadgeView.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRDropTargetButton.h"
#include "widgets/VLRDropTargetButtonDelegate.h"
#include "widgets/VLRLabel.h"
#include "widgets/VLRTextFieldAdditions.h"
#include "widgets/WidgetTesting.h"

#include <gmock/gmock.h>

#include <cmath>
#include <tuple>

namespace {

const QColor kDarkened = QColor::fromRgbF(0, 0, 0, 0.1f);

struct MockDropTargetButtonDelegate : VLRDropTargetButtonDelegate
{
    MOCK_METHOD(void, dropTargetButtonDidReceiveDragEvent, (VLRDropTargetButton*), (override));
    MOCK_METHOD(void, dropTargetButtonDidReceiveFiles, (VLRDropTargetButton*, const QStringList&), (override));
};

} // namespace

TEST(Button, PicturesAndColoursImplyTheirStylesInTheOrderOfTheCalls)
{
    VLRButton button(QRect(0, 0, 120, 30));
    button.setTitle("Uploads");
    int clicks = 0;
    QObject::connect(&button, &VLRButton::clicked, [&clicks] { ++clicks; });
    const QPixmap normal(10, 10);
    const QPixmap over(10, 10);
    const QPixmap pressed(10, 10);
    const auto shows = [&button](const QPixmap& image) { return button.image().cacheKey() == image.cacheKey(); };
    button.setDefaultImage(normal);
    button.setMouseOverImage(over);
    button.setClickedImage(pressed);
    sendEnterOrLeave(&button, true);
    EXPECT_TRUE(shows(over));
    sendMouse(&button, QEvent::MouseButtonPress);
    EXPECT_TRUE(shows(pressed));
    EXPECT_EQ(clicks, 0);
    // Released far outside: the action fires all the same.
    sendMouse(&button, QEvent::MouseButtonRelease, QPointF(500, 500));
    EXPECT_TRUE(shows(normal));
    EXPECT_EQ(clicks, 1);

    // A text colour after the pictures: the pointer tints the title instead.
    button.setMouseOverTextColor(VLRColors::mainAppColor());
    button.setTextColor(VLRColors::grey(151));
    sendEnterOrLeave(&button, true);
    EXPECT_TRUE(shows(normal));
    EXPECT_EQ(button.attributedTitle().foregroundColor, VLRColors::mainAppColor());
    sendEnterOrLeave(&button, false);
    EXPECT_EQ(button.attributedTitle().foregroundColor, VLRColors::grey(151));
    // A picture after the colour: the picture again.
    button.setMouseOverImage(over);
    sendEnterOrLeave(&button, true);
    EXPECT_TRUE(shows(over));
    EXPECT_EQ(button.attributedTitle().foregroundColor, VLRColors::grey(151));

    // A cleared picture keeps the style it brought: a press shows none.
    button.setClickedImage(QPixmap());
    sendMouse(&button, QEvent::MouseButtonPress);
    EXPECT_TRUE(button.image().isNull());
    // No picture or colour, no style: the platform's button fires only when
    // released over it.
    VLRButton plain(QRect(0, 0, 80, 30));
    plain.setMouseOverImage(QPixmap());
    plain.setClickedImage(QPixmap());
    plain.setTextColor(QColor());
    EXPECT_EQ(plain.mouseOverStyle(), VLRMouseOverStyleNone);
    QObject::connect(&plain, &VLRButton::clicked, [&clicks] { ++clicks; });
    sendMouse(&plain, QEvent::MouseButtonPress);
    sendMouse(&plain, QEvent::MouseButtonRelease, QPointF(500, 5));
    EXPECT_EQ(clicks, 1);
}

TEST(Button, BackgroundStylesDarkenWhilePressedOrUnderThePointerOfAnEnabledButton)
{
    VLRButton button(QRect(0, 0, 80, 30));
    int clicks = 0;
    QObject::connect(&button, &VLRButton::clicked, [&clicks] { ++clicks; });
    button.setBackgroundColor(QColor(233, 233, 233));
    button.setClickStyle(VLRClickStyleBackground);
    button.setMouseOverStyle(VLRMouseOverStyleBackground);
    sendMouse(&button, QEvent::MouseButtonPress);
    ASSERT_NE(button.layer(), nullptr);
    EXPECT_EQ(button.layer()->backgroundColor, kDarkened);
    sendMouse(&button, QEvent::MouseButtonRelease, QPointF(-40, 5));
    EXPECT_EQ(button.layer()->backgroundColor, QColor(Qt::transparent));
    EXPECT_EQ(clicks, 1);
    sendEnterOrLeave(&button, true);
    EXPECT_EQ(button.layer()->backgroundColor, kDarkened);

    // Disabled, press, release and leaving are the platform's and change
    // nothing; enabling puts the button's own background back.
    button.setEnabled(false);
    sendMouse(&button, QEvent::MouseButtonPress);
    sendMouse(&button, QEvent::MouseButtonRelease);
    sendEnterOrLeave(&button, false);
    EXPECT_EQ(button.layer()->backgroundColor, kDarkened);
    EXPECT_EQ(clicks, 1);
    button.setEnabled(true);
    EXPECT_EQ(button.layer()->backgroundColor, QColor(233, 233, 233));
    // Enabling an enabled button puts the colour back too.
    sendEnterOrLeave(&button, true);
    button.setEnabled(true);
    EXPECT_EQ(button.layer()->backgroundColor, QColor(233, 233, 233));
}

TEST(Button, TitleLivesInALabel3TallerThanItsTextAndMovesThereAtTheFirstReading)
{
    VLRButton button(QRect(0, 0, 100, 30));
    const VLRAttributedString empty = button.attributedTitle();
    EXPECT_EQ(button.centeredTitleFrame(), VLRLabel::labelFrameCenteredInFrame(QRectF(0, 0, 100, 30), empty, -3));
    button.setText("Workspaces");
    EXPECT_EQ(button.title(), "Workspaces");
    EXPECT_EQ(button.text(), "");
}

TEST(Button, UntitledBadgeStaysInTheCornerAndIsRebuiltForItsNewLook)
{
    VLRButton button(QRect(0, 0, 100, 30));
    // The present value: nothing happens, no badge is made.
    button.setBadgeValue(0);
    EXPECT_EQ(button.badgeView(), nullptr);
    button.setBadgeValue(5);
    ASSERT_NE(button.badgeView(), nullptr);
    button.setBadgeValue(250);
    EXPECT_EQ(button.badgeView()->frame(), QRectF(74, 0, 26, 30));
    EXPECT_EQ(button.badgeView()->badgeValue(), 250);
    EXPECT_EQ(button.titleLabel()->frame(), button.centeredTitleFrame());

    // The other look makes the badge anew in its own frame, the old one out
    // of sight.
    QPointer<VLRBadgeView> bubble = button.badgeView();
    button.setBadgeIsWarning(true);
    ASSERT_NE(button.badgeView(), nullptr);
    ASSERT_FALSE(bubble.isNull());
    EXPECT_TRUE(bubble->isHidden());
    EXPECT_EQ(bubble->parentWidget(), &button);
    EXPECT_TRUE(button.badgeView()->isWarning());
    EXPECT_EQ(button.badgeView()->frame(), QRectF(74, 7, 16, 16));
    EXPECT_EQ(button.badgeView()->badgeValue(), 250);
    button.setBadgeIsWarning(false);
    EXPECT_EQ(button.badgeView()->frame(), QRectF(74, 0, 26, 30));
    // A negative value hides the badge as 0 does.
    button.setBadgeValue(-2);
    EXPECT_TRUE(button.badgeView()->isHidden());
}

TEST(Button, TitleAndBadgeAreCentredAsAPairWithSinglePrecisionRounding)
{
    VLRButton button(QRect(0, 0, 100, 30));
    button.setTitle("Uploads");
    const qreal titleWidth = layoutSizeForAttributedString(button.attributedTitle()).width();
    const QRectF centered = button.centeredTitleFrame();
    // Ellipse 16: the title moves by roundf(-8.5), away from zero: 9 left.
    // Two digits widen the bubble to 21, three to 26, and move it further.
    const std::tuple<qint64, qreal, qreal> cases[] = {{9, 16, -9}, {10, 21, -11}, {99, 21, -11}, {100, 26, -14}};
    for (const auto& [value, ellipseWidth, shift] : cases) {
        button.setBadgeValue(value);
        const qreal badgeX = std::roundf(float((titleWidth + 100 - ellipseWidth + 1) * 0.5));
        EXPECT_EQ(button.titleLabel()->frame(), centered.translated(shift, 0)) << value;
        EXPECT_EQ(button.badgeView()->frame(), QRectF(badgeX, 0, 26, 30)) << value;
    }
    // The badge goes, and the title comes back to the middle.
    button.setBadgeValue(0);
    EXPECT_EQ(button.titleLabel()->frame(), centered);
    EXPECT_TRUE(button.badgeView()->isHidden());
}

TEST(Button, BadgeOffsetAddsUpWithEveryValueOfATitledButton)
{
    VLRButton titled(QRect(0, 0, 100, 30));
    titled.setTitle("Uploads");
    titled.setBadgeOffset(QPointF(3, 2));
    titled.setBadgeValue(1);
    const qreal x = titled.badgeView()->frame().x();
    // Made at y 0, moved once when made, once after centring.
    EXPECT_EQ(titled.badgeView()->frame().y(), 4);
    titled.setBadgeValue(2);
    EXPECT_EQ(titled.badgeView()->frame().topLeft(), QPointF(x, 6));
    // Setting the offset moves it at once, once more.
    titled.setBadgeOffset(QPointF(0, -1));
    EXPECT_EQ(titled.badgeView()->frame().y(), 5);

    // Without a title the offset counts once, when the badge is made.
    VLRButton untitled(QRect(0, 0, 100, 30));
    untitled.setBadgeOffset(QPointF(-4, 2));
    untitled.setBadgeValue(1);
    untitled.setBadgeValue(12);
    EXPECT_EQ(untitled.badgeView()->frame(), QRectF(70, 2, 26, 30));
}

TEST(Button, DropTargetButtonReportsDragsAndFiles)
{
    testing::StrictMock<MockDropTargetButtonDelegate> delegate;
    VLRDropTargetButton button(QRect(0, 0, 60, 40));
    EXPECT_TRUE(button.acceptDrops());
    button.setDelegate(&delegate);
    // A drag without files is taken as a copy and told; its drop delivers nothing.
    EXPECT_CALL(delegate, dropTargetButtonDidReceiveDragEvent(&button)).Times(3);
    EXPECT_CALL(delegate, dropTargetButtonDidReceiveFiles(&button, QStringList({"/home/me/scene.blend"})));
    EXPECT_TRUE(sendDrop(&button, filesMimeData({"/home/me/scene.blend"}).get()));
    QMimeData empty;
    EXPECT_TRUE(sendDragEnter(&button, &empty));
    EXPECT_TRUE(sendDrop(&button, &empty));
}
