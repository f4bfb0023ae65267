#include "widgets/VLRBadgeView.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRColors.h"
#include "widgets/VLRDropTargetButton.h"
#include "widgets/VLRDropTargetButtonDelegate.h"
#include "widgets/VLRLabel.h"
#include "widgets/VLRTextFieldAdditions.h"

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

#include <gmock/gmock.h>

#include <cmath>

namespace {

QPixmap solidPixmap(const QColor& color)
{
    QPixmap pixmap(10, 10);
    pixmap.fill(color);
    return pixmap;
}

void sendMouse(QWidget* widget, QEvent::Type type, const QPointF& position)
{
    const Qt::MouseButtons buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, position, position, widget->mapToGlobal(position), Qt::LeftButton, buttons,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

void sendEnter(QWidget* widget)
{
    QEnterEvent event(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
    QCoreApplication::sendEvent(widget, &event);
}

void sendLeave(QWidget* widget)
{
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(widget, &event);
}

const QColor kPressed = QColor::fromRgbF(0, 0, 0, 0.1f);

} // namespace

TEST(Button, SettersImplyStylesInTheOrderOfTheCalls)
{
    const QPixmap normal = solidPixmap(Qt::gray);
    const QPixmap over = solidPixmap(Qt::darkGray);
    const QPixmap pressed = solidPixmap(Qt::black);

    VLRButton imagesFirst;
    imagesFirst.setDefaultImage(normal);
    EXPECT_EQ(imagesFirst.image().cacheKey(), normal.cacheKey());
    imagesFirst.setMouseOverImage(over);
    EXPECT_EQ(imagesFirst.mouseOverStyle(), VLRMouseOverStyleImage);
    imagesFirst.setClickedImage(pressed);
    EXPECT_EQ(imagesFirst.clickStyle(), VLRClickStyleImage);
    imagesFirst.setTextColor(VLRColors::grey(151));
    EXPECT_EQ(imagesFirst.mouseOverStyle(), VLRMouseOverStyleText);

    VLRButton colourFirst;
    colourFirst.setTextColor(VLRColors::grey(151));
    EXPECT_EQ(colourFirst.mouseOverStyle(), VLRMouseOverStyleText);
    colourFirst.setMouseOverImage(over);
    EXPECT_EQ(colourFirst.mouseOverStyle(), VLRMouseOverStyleImage);

    // No picture, no style; clearing a picture keeps the style it brought.
    VLRButton plain;
    plain.setMouseOverImage(QPixmap());
    plain.setClickedImage(QPixmap());
    plain.setTextColor(QColor());
    EXPECT_EQ(plain.mouseOverStyle(), VLRMouseOverStyleNone);
    EXPECT_EQ(plain.clickStyle(), VLRClickStyleNone);

    imagesFirst.setClickedImage(QPixmap());
    EXPECT_EQ(imagesFirst.clickStyle(), VLRClickStyleImage);
    sendMouse(&imagesFirst, QEvent::MouseButtonPress, QPointF(2, 2));
    EXPECT_TRUE(imagesFirst.image().isNull());
    sendMouse(&imagesFirst, QEvent::MouseButtonRelease, QPointF(2, 2));
    EXPECT_EQ(imagesFirst.image().cacheKey(), normal.cacheKey());
}

TEST(Button, PressAndReleaseByStyleFireAtEveryRelease)
{
    VLRButton button(QRect(0, 0, 80, 30));
    int clicks = 0;
    QObject::connect(&button, &VLRButton::clicked, [&clicks] { ++clicks; });

    button.setClickStyle(VLRClickStyleBackground);
    sendMouse(&button, QEvent::MouseButtonPress, QPointF(5, 5));
    ASSERT_NE(button.layer(), nullptr);
    EXPECT_EQ(button.layer()->backgroundColor, kPressed);
    EXPECT_EQ(clicks, 0);
    // Released far outside: the action fires all the same.
    sendMouse(&button, QEvent::MouseButtonRelease, QPointF(500, 500));
    EXPECT_EQ(button.layer()->backgroundColor, QColor(Qt::transparent));
    EXPECT_EQ(clicks, 1);

    const QPixmap normal = solidPixmap(Qt::gray);
    const QPixmap pressed = solidPixmap(Qt::black);
    button.setDefaultImage(normal);
    button.setClickedImage(pressed);
    sendMouse(&button, QEvent::MouseButtonPress, QPointF(5, 5));
    EXPECT_EQ(button.image().cacheKey(), pressed.cacheKey());
    sendMouse(&button, QEvent::MouseButtonRelease, QPointF(-40, 5));
    EXPECT_EQ(button.image().cacheKey(), normal.cacheKey());
    EXPECT_EQ(clicks, 2);

    // A disabled button ignores the press and the release.
    button.setEnabled(false);
    sendMouse(&button, QEvent::MouseButtonPress, QPointF(5, 5));
    EXPECT_EQ(button.image().cacheKey(), normal.cacheKey());
    sendMouse(&button, QEvent::MouseButtonRelease, QPointF(5, 5));
    EXPECT_EQ(clicks, 2);

    // The platform's style fires only when released over the button.
    VLRButton platform(QRect(0, 0, 80, 30));
    int platformClicks = 0;
    QObject::connect(&platform, &VLRButton::clicked, [&platformClicks] { ++platformClicks; });
    sendMouse(&platform, QEvent::MouseButtonPress, QPointF(5, 5));
    sendMouse(&platform, QEvent::MouseButtonRelease, QPointF(500, 5));
    EXPECT_EQ(platformClicks, 0);
    sendMouse(&platform, QEvent::MouseButtonPress, QPointF(5, 5));
    sendMouse(&platform, QEvent::MouseButtonRelease, QPointF(6, 6));
    EXPECT_EQ(platformClicks, 1);
}

TEST(Button, MouseOverStylesAndTheBackgroundBroughtBackOnEnabling)
{
    VLRButton button(QRect(0, 0, 120, 30));
    button.setTitle("Uploads");
    const QColor grey = VLRColors::grey(151);
    const QColor accent = VLRColors::mainAppColor();
    button.setMouseOverTextColor(accent);
    button.setTextColor(grey);
    EXPECT_EQ(button.attributedTitle().foregroundColor, grey);
    sendEnter(&button);
    EXPECT_EQ(button.attributedTitle().foregroundColor, accent);
    sendLeave(&button);
    EXPECT_EQ(button.attributedTitle().foregroundColor, grey);

    const QPixmap normal = solidPixmap(Qt::gray);
    const QPixmap over = solidPixmap(Qt::darkGray);
    button.setDefaultImage(normal);
    button.setMouseOverImage(over);
    sendEnter(&button);
    EXPECT_EQ(button.image().cacheKey(), over.cacheKey());
    sendLeave(&button);
    EXPECT_EQ(button.image().cacheKey(), normal.cacheKey());

    button.setBackgroundColor(QColor(233, 233, 233));
    button.setMouseOverStyle(VLRMouseOverStyleBackground);
    sendEnter(&button);
    EXPECT_EQ(button.layer()->backgroundColor, kPressed);
    // Disabled: entering is the platform's and changes nothing.
    button.setEnabled(false);
    sendLeave(&button);
    EXPECT_EQ(button.layer()->backgroundColor, kPressed);
    // Enabling puts the button's own background back.
    button.setEnabled(true);
    EXPECT_EQ(button.layer()->backgroundColor, QColor(233, 233, 233));

    // A text colour given before the title colours nothing: there is no text.
    VLRButton early(QRect(0, 0, 120, 30));
    early.setTextColor(accent);
    early.setTitle("Later");
    EXPECT_EQ(early.attributedTitle().foregroundColor, VLRColors::textColor());
}

TEST(Button, TitleLivesInItsLabelAndMovesThereAtTheFirstReading)
{
    VLRButton button(QRect(0, 0, 100, 30));
    // The label is made 3 taller than its text and its y rounded.
    const VLRAttributedString empty = button.attributedTitle();
    EXPECT_EQ(empty.string, "");
    EXPECT_EQ(empty.alignment, Qt::AlignHCenter);
    const qreal textHeight = empty.size().height();
    EXPECT_EQ(button.centeredTitleFrame(),
              QRectF(0, std::roundf(float(15 - 0.5 * (textHeight + 3) - 3)), 100, textHeight + 3));
    EXPECT_EQ(button.titleLabel()->frame(), button.centeredTitleFrame());
    EXPECT_TRUE(button.titleLabel()->testAttribute(Qt::WA_TransparentForMouseEvents));

    button.setText("Workspaces");
    EXPECT_EQ(button.title(), "Workspaces");
    EXPECT_EQ(button.text(), "");
    EXPECT_EQ(button.titleLabel()->stringValue(), "Workspaces");
    EXPECT_EQ(button.title(), "Workspaces");

    button.setText("Marketplace");
    EXPECT_EQ(button.attributedTitle().string, "Marketplace");
    EXPECT_EQ(button.text(), "");

    VLRAttributedString title = button.attributedTitle();
    title.string = "Preferences";
    title.foregroundColor = Qt::red;
    button.setAttributedTitle(title);
    EXPECT_EQ(button.title(), "Preferences");
    EXPECT_EQ(button.titleLabel()->attributedStringValue().foregroundColor, QColor(Qt::red));
}

TEST(Button, BadgeWithoutTitleStaysInTheCornerForBothLooks)
{
    VLRButton button(QRect(0, 0, 100, 30));
    // The present value: nothing happens, no badge is made.
    button.setBadgeValue(0);
    EXPECT_EQ(button.badgeView(), nullptr);

    button.setBadgeValue(5);
    ASSERT_NE(button.badgeView(), nullptr);
    EXPECT_EQ(button.badgeView()->frame(), QRectF(74, 0, 26, 30));
    EXPECT_FALSE(button.badgeView()->isHidden());
    EXPECT_EQ(button.badgeView()->badgeValue(), 5);
    button.setBadgeValue(250);
    EXPECT_EQ(button.badgeView()->frame(), QRectF(74, 0, 26, 30));
    EXPECT_EQ(button.titleLabel()->frame(), button.centeredTitleFrame());

    button.setBadgeValue(-2);
    EXPECT_TRUE(button.badgeView()->isHidden());
    EXPECT_EQ(button.badgeValue(), -2);

    VLRButton warning(QRect(0, 0, 100, 30));
    warning.setBadgeIsWarning(true);
    warning.setBadgeValue(3);
    ASSERT_NE(warning.badgeView(), nullptr);
    EXPECT_EQ(warning.badgeView()->frame(), QRectF(74, 7, 16, 16));
    EXPECT_TRUE(warning.badgeView()->isWarning());
    EXPECT_NE(warning.badgeView()->layer(), nullptr);
}

TEST(Button, TitleAndBadgeAreCentredAsAPairWithSinglePrecisionRounding)
{
    VLRButton button(QRect(0, 0, 100, 30));
    button.setTitle("Uploads");
    const qreal titleWidth = layoutSizeForAttributedString(button.attributedTitle()).width();
    const QRectF centered = button.centeredTitleFrame();
    const auto badgeX = [&](qreal ellipseWidth) {
        return std::roundf(float((titleWidth + 100 - ellipseWidth + 1) * 0.5));
    };

    // Ellipse 16: the title moves by roundf(-8.5), away from zero: 9 left.
    button.setBadgeValue(9);
    EXPECT_EQ(button.badgeView()->ellipseRect().width(), 16);
    EXPECT_EQ(button.titleLabel()->frame(), centered.translated(-9, 0));
    EXPECT_EQ(button.badgeView()->frame(), QRectF(badgeX(16), 0, 26, 30));

    // Two digits widen the ellipse to 21 and move the title further.
    button.setBadgeValue(10);
    EXPECT_EQ(button.titleLabel()->frame(), centered.translated(-11, 0));
    EXPECT_EQ(button.badgeView()->frame(), QRectF(badgeX(21), 0, 26, 30));

    button.setBadgeValue(100);
    EXPECT_EQ(button.titleLabel()->frame(), centered.translated(-14, 0));
    EXPECT_EQ(button.badgeView()->frame(), QRectF(badgeX(26), 0, 26, 30));

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
    EXPECT_EQ(titled.badgeView()->frame().y(), 6);
    EXPECT_EQ(titled.badgeView()->frame().x(), x);
    titled.setBadgeValue(3);
    EXPECT_EQ(titled.badgeView()->frame().y(), 8);
    // Setting the offset moves it at once, once more.
    titled.setBadgeOffset(QPointF(0, -1));
    EXPECT_EQ(titled.badgeView()->frame().y(), 7);

    // Without a title the offset counts once, when the badge is made.
    VLRButton untitled(QRect(0, 0, 100, 30));
    untitled.setBadgeOffset(QPointF(-4, 2));
    untitled.setBadgeValue(1);
    EXPECT_EQ(untitled.badgeView()->frame(), QRectF(70, 2, 26, 30));
    untitled.setBadgeValue(12);
    untitled.setBadgeValue(7);
    EXPECT_EQ(untitled.badgeView()->frame(), QRectF(70, 2, 26, 30));
}

TEST(Button, ChangingTheWarningFlagRebuildsTheBadgeInItsNewLook)
{
    VLRButton button(QRect(0, 0, 100, 30));
    button.setBadgeValue(4);
    QPointer<VLRBadgeView> bubble = button.badgeView();
    ASSERT_NE(bubble, nullptr);

    // The same flag again changes nothing.
    button.setBadgeIsWarning(false);
    EXPECT_EQ(button.badgeView(), bubble.data());

    button.setBadgeIsWarning(true);
    ASSERT_NE(button.badgeView(), nullptr);
    EXPECT_NE(button.badgeView(), bubble.data());
    EXPECT_TRUE(bubble.isNull() || bubble->isHidden());
    EXPECT_TRUE(button.badgeView()->isWarning());
    EXPECT_EQ(button.badgeView()->frame(), QRectF(74, 7, 16, 16));
    EXPECT_EQ(button.badgeView()->badgeValue(), 4);
    EXPECT_EQ(button.badgeValue(), 4);

    button.setBadgeIsWarning(false);
    EXPECT_FALSE(button.badgeView()->isWarning());
    EXPECT_EQ(button.badgeView()->frame(), QRectF(74, 0, 26, 30));

    // With no badge showing the flag is only stored, for the next value.
    VLRButton idle(QRect(0, 0, 100, 30));
    idle.setBadgeIsWarning(true);
    EXPECT_EQ(idle.badgeView(), nullptr);
    EXPECT_TRUE(idle.badgeIsWarning());
}

TEST(Button, DropTargetButtonReportsDragsAndFiles)
{
    class Delegate : public VLRDropTargetButtonDelegate
    {
    public:
        void dropTargetButtonDidReceiveDragEvent(VLRDropTargetButton*) override { ++drags; }
        void dropTargetButtonDidReceiveFiles(VLRDropTargetButton*, const QStringList& received) override
        {
            files.append(received);
        }
        int drags = 0;
        QList<QStringList> files;
    } delegate;

    VLRDropTargetButton button(QRect(0, 0, 60, 40));
    EXPECT_TRUE(button.acceptDrops());
    button.setDelegate(&delegate);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile("/home/me/scene.blend")});
    QDragEnterEvent enter(QPoint(2, 2), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&button, &enter);
    EXPECT_TRUE(enter.isAccepted());
    EXPECT_EQ(enter.dropAction(), Qt::CopyAction);
    EXPECT_EQ(delegate.drags, 1);

    QDropEvent drop(QPointF(2, 2), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&button, &drop);
    EXPECT_TRUE(drop.isAccepted());
    ASSERT_EQ(delegate.files.size(), 1);
    EXPECT_EQ(delegate.files.first(), QStringList({"/home/me/scene.blend"}));

    QMimeData empty;
    QDragEnterEvent again(QPoint(2, 2), Qt::CopyAction, &empty, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&button, &again);
    EXPECT_EQ(delegate.drags, 2);
    QDropEvent nothing(QPointF(2, 2), Qt::CopyAction, &empty, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&button, &nothing);
    EXPECT_TRUE(nothing.isAccepted());
    EXPECT_EQ(delegate.files.size(), 1);
}
