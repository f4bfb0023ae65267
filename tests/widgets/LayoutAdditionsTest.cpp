#include "widgets/StatusItemImageView.h"
#include "widgets/VLRApplicationAdditions.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRLabel.h"
#include "widgets/VLRModalSession.h"
#include "widgets/VLRTextFieldAdditions.h"
#include "widgets/VLRViewAdditions.h"
#include "widgets/VLRViewControllerAdditions.h"
#include "widgets/VLRWindowAdditions.h"

#include <QDialog>
#include <QEventLoop>
#include <QTimer>

#include <gmock/gmock.h>

#include <cmath>

namespace {

VLRLayoutConstraint constraint(QWidget* first, VLRLayoutAttribute firstAttribute, QWidget* second,
                               VLRLayoutAttribute secondAttribute, qreal constant)
{
    return VLRLayoutConstraint{first, firstAttribute, second, secondAttribute, constant};
}

QList<qreal> constants(const QWidget* view)
{
    QList<qreal> list;
    for (const VLRLayoutConstraint& c : vlr_constraints(view))
        list.append(c.constant);
    return list;
}

// Runs the event loop until the flag is set, for at most two seconds.
void waitFor(const bool& flag)
{
    QEventLoop loop;
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout, &loop, &QEventLoop::quit);
    guard.start(2000);
    while (!flag && guard.isActive())
        loop.processEvents(QEventLoop::WaitForMoreEvents, 50);
}

} // namespace

TEST(LayoutAdditions, SetParentViewFillsTheHostAndFollowsItsSize)
{
    QWidget host;
    host.resize(300, 200);
    QWidget page;
    EXPECT_TRUE(vlr_translatesAutoresizingMaskIntoConstraints(&page));
    setParentView(&page, &host);
    EXPECT_EQ(page.parentWidget(), &host);
    EXPECT_FALSE(vlr_translatesAutoresizingMaskIntoConstraints(&page));
    EXPECT_EQ(page.geometry(), QRect(0, 0, 300, 200));

    const QList<VLRLayoutConstraint> pins = vlr_constraints(&host);
    ASSERT_EQ(pins.size(), 4);
    const VLRLayoutAttribute order[] = {VLRLayoutAttributeLeft, VLRLayoutAttributeRight, VLRLayoutAttributeTop,
                                        VLRLayoutAttributeBottom};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(pins.at(i).firstItem, &page);
        EXPECT_EQ(pins.at(i).firstAttribute, order[i]);
        EXPECT_EQ(pins.at(i).secondItem, &host);
        EXPECT_EQ(pins.at(i).secondAttribute, order[i]);
        EXPECT_EQ(pins.at(i).constant, 0);
    }

    host.resize(420, 380);
    host.show();
    EXPECT_EQ(page.geometry(), QRect(0, 0, 420, 380));
    page.setParent(nullptr);
}

TEST(LayoutAdditions, ConstraintsPlaceTheirFirstItem)
{
    QWidget root;
    root.resize(300, 200);
    auto* name = new QWidget(&root);
    name->setGeometry(10, 10, 100, 20);
    vlr_setTranslatesAutoresizingMaskIntoConstraints(name, false);
    vlr_addConstraint(&root, constraint(name, VLRLayoutAttributeTop, &root, VLRLayoutAttributeTop, 27));
    EXPECT_EQ(name->geometry(), QRect(10, 27, 100, 20));
    vlr_addConstraint(&root, constraint(name, VLRLayoutAttributeRight, &root, VLRLayoutAttributeRight, -8));
    EXPECT_EQ(name->geometry(), QRect(192, 27, 100, 20));
    vlr_addConstraint(&root, constraint(name, VLRLayoutAttributeWidth, nullptr, VLRLayoutAttributeNotAnAttribute, 50));
    EXPECT_EQ(name->geometry(), QRect(242, 27, 50, 20));

    // A translated view keeps its frame whatever its constraints say.
    auto* free = new QWidget(&root);
    free->setGeometry(5, 5, 10, 10);
    vlr_addConstraint(&root, constraint(free, VLRLayoutAttributeLeft, &root, VLRLayoutAttributeLeft, 100));
    EXPECT_EQ(free->geometry(), QRect(5, 5, 10, 10));
}

TEST(LayoutAdditions, RemovingOneConstraintBySearch)
{
    QWidget root;
    auto* a = new QWidget(&root);
    auto* b = new QWidget(&root);
    vlr_addConstraint(&root, constraint(a, VLRLayoutAttributeTop, &root, VLRLayoutAttributeTop, 1));
    vlr_addConstraint(&root, constraint(a, VLRLayoutAttributeTop, b, VLRLayoutAttributeBottom, 2));
    vlr_addConstraint(&root, constraint(a, VLRLayoutAttributeTop, &root, VLRLayoutAttributeBottom, 3));
    vlr_addConstraint(&root, constraint(a, VLRLayoutAttributeLeft, &root, VLRLayoutAttributeLeft, 4));
    vlr_addConstraint(&root, constraint(a, VLRLayoutAttributeTop, b, VLRLayoutAttributeTop, 5));

    // Nothing matches: false, nothing changes.
    EXPECT_FALSE(vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
        &root, b, VLRLayoutAttributeTop, nullptr, VLRLayoutAttributeNotAnAttribute));
    EXPECT_FALSE(vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
        &root, a, VLRLayoutAttributeRight, nullptr, VLRLayoutAttributeNotAnAttribute));
    EXPECT_FALSE(vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
        &root, a, VLRLayoutAttributeTop, b, VLRLayoutAttributeLeft));
    EXPECT_EQ(constants(&root), QList<qreal>({1, 2, 3, 4, 5}));
    // Constraints are held by the view they were added to, no other.
    EXPECT_FALSE(vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
        a, a, VLRLayoutAttributeTop, nullptr, VLRLayoutAttributeNotAnAttribute));

    // Second item and attribute given: both must match.
    EXPECT_TRUE(vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
        &root, a, VLRLayoutAttributeTop, b, VLRLayoutAttributeTop));
    EXPECT_EQ(constants(&root), QList<qreal>({1, 2, 3, 4}));
    // Only the attribute: whatever the second item, the first in order.
    EXPECT_TRUE(vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
        &root, a, VLRLayoutAttributeTop, nullptr, VLRLayoutAttributeBottom));
    EXPECT_EQ(constants(&root), QList<qreal>({1, 3, 4}));
    // Only the item.
    EXPECT_TRUE(vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
        &root, a, VLRLayoutAttributeTop, &root, VLRLayoutAttributeNotAnAttribute));
    EXPECT_EQ(constants(&root), QList<qreal>({3, 4}));
    // Neither: the first with that first item and attribute, one only.
    vlr_addConstraint(&root, constraint(a, VLRLayoutAttributeLeft, b, VLRLayoutAttributeRight, 6));
    EXPECT_TRUE(vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
        &root, a, VLRLayoutAttributeLeft, nullptr, VLRLayoutAttributeNotAnAttribute));
    EXPECT_EQ(constants(&root), QList<qreal>({3, 6}));
}

TEST(LayoutAdditions, RemovingAllConstraintsOfAView)
{
    QWidget root;
    auto* panel = new QWidget(&root);
    auto* button = new QWidget(panel);
    auto* other = new QWidget(panel);
    vlr_addConstraint(&root, constraint(button, VLRLayoutAttributeTop, &root, VLRLayoutAttributeTop, 1));
    vlr_addConstraint(&root, constraint(other, VLRLayoutAttributeLeft, button, VLRLayoutAttributeRight, 2));
    vlr_addConstraint(&root, constraint(other, VLRLayoutAttributeTop, &root, VLRLayoutAttributeTop, 3));
    vlr_addConstraint(panel, constraint(button, VLRLayoutAttributeLeft, panel, VLRLayoutAttributeLeft, 4));
    vlr_addConstraint(button, constraint(button, VLRLayoutAttributeWidth, nullptr,
                                         VLRLayoutAttributeNotAnAttribute, 5));
    vlr_setTranslatesAutoresizingMaskIntoConstraints(button, false);

    vlr_removeAllConstraints(button);
    EXPECT_EQ(constants(&root), QList<qreal>({3}));
    EXPECT_TRUE(vlr_constraints(panel).isEmpty());
    EXPECT_TRUE(vlr_constraints(button).isEmpty());
    EXPECT_TRUE(vlr_translatesAutoresizingMaskIntoConstraints(button));

    // With no parent: its own constraints go, and the mask is on.
    QWidget lone;
    vlr_setTranslatesAutoresizingMaskIntoConstraints(&lone, false);
    vlr_addConstraint(&lone, constraint(&lone, VLRLayoutAttributeHeight, nullptr,
                                        VLRLayoutAttributeNotAnAttribute, 7));
    vlr_removeAllConstraints(&lone);
    EXPECT_TRUE(vlr_constraints(&lone).isEmpty());
    EXPECT_TRUE(vlr_translatesAutoresizingMaskIntoConstraints(&lone));

    // Absent views: nothing happens.
    vlr_removeAllConstraints(nullptr);
    EXPECT_FALSE(vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(
        nullptr, button, VLRLayoutAttributeTop, nullptr, VLRLayoutAttributeNotAnAttribute));
}

TEST(LayoutAdditions, CentredLabelArithmetic)
{
    VLRAttributedString string;
    string.string = "Uploads";
    string.font = VLRFonts::muli(12);
    const qreal h = string.size().height();

    // The text field's constructor: the text's height, y not rounded.
    std::unique_ptr<VLRTextField> field(
        vlr_labelCenteredInFrameAttributedStringVerticalOffset(QRectF(10, 40, 200, 2 * h + 4), string, 1));
    EXPECT_EQ(field->frame(), QRectF(10, 40 + h + 2 - 0.5 * h + 1, 200, h));
    EXPECT_EQ(field->attributedStringValue(), string);
    EXPECT_FALSE(field->testAttribute(Qt::WA_TransparentForMouseEvents));

    // A frame 20 high for a text 16 high, offset 1: y is the frame's plus 3.
    VLRAttributedString sixteen = string;
    sixteen.font.setPixelSize(1);
    for (int pixels = 1; pixels < 60 && sixteen.size().height() != 16; ++pixels)
        sixteen.font.setPixelSize(pixels);
    ASSERT_EQ(sixteen.size().height(), 16);
    field.reset(vlr_labelCenteredInFrameAttributedStringVerticalOffset(QRectF(0, 7, 50, 20), sixteen, 1));
    EXPECT_EQ(field->frame(), QRectF(0, 10, 50, 16));

    // The label's constructor: 3 taller with offset -3, y rounded in single
    // precision, halves away from zero, 4.5 from the field's y before.
    std::unique_ptr<VLRLabel> label(
        VLRLabel::labelCenteredInFrameAttributedStringVerticalOffset(QRectF(0, 0, 100, 25), sixteen, -3));
    // 12.5 − 9.5 − 3 = 0
    EXPECT_EQ(label->frame(), QRectF(0, 0, 100, 19));
    label.reset(VLRLabel::labelCenteredInFrameAttributedStringVerticalOffset(QRectF(0, 0, 100, 30), sixteen, -3));
    // 15 − 9.5 − 3 = 2.5, rounded up to 3
    EXPECT_EQ(label->frame(), QRectF(0, 3, 100, 19));
    field.reset(vlr_labelCenteredInFrameAttributedStringVerticalOffset(QRectF(0, 0, 100, 30), sixteen, -3));
    EXPECT_EQ(field->frame().y(), 4);
    EXPECT_EQ(VLRLabel::labelFrameCenteredInFrame(QRectF(0, -40, 100, 30), sixteen, -3).y(), -38);
    EXPECT_TRUE(label->testAttribute(Qt::WA_TransparentForMouseEvents));
}

TEST(LayoutAdditions, LabelsFromPlainStrings)
{
    std::unique_ptr<VLRTextField> field(
        vlr_labelCenteredInFrameStringAlignment(QRectF(0, 0, 80, 20), "A rather long file name.psd", Qt::AlignLeft));
    const VLRAttributedString value = field->attributedStringValue();
    EXPECT_EQ(value.string, "A rather long file name.psd");
    EXPECT_EQ(value.font.pixelSize(), 12);
    EXPECT_EQ(value.lineBreakMode, Qt::ElideMiddle);
    EXPECT_EQ(value.alignment, Qt::AlignLeft);
    EXPECT_EQ(field->frame().y(), 10 - 0.5 * value.size().height() + 1);

    // Fits at 12: stays 12, not truncated.
    field.reset(vlr_labelScalingFontCenteredInFrameStringAlignment(QRectF(0, 0, 100, 20), "1.2 MB", Qt::AlignHCenter));
    EXPECT_EQ(field->attributedStringValue().font.pixelSize(), 12);
    EXPECT_EQ(field->attributedStringValue().lineBreakMode, Qt::ElideNone);
    EXPECT_EQ(field->attributedStringValue().alignment, Qt::AlignHCenter);

    // Too wide: a point smaller at a time until it fits.
    const QString size = "1,023.9 MB";
    field.reset(vlr_labelScalingFontCenteredInFrameStringAlignment(QRectF(0, 0, 45, 20), size, Qt::AlignHCenter));
    const int fitted = field->attributedStringValue().font.pixelSize();
    EXPECT_LT(fitted, 12);
    VLRAttributedString probe = field->attributedStringValue();
    EXPECT_LE(layoutSizeForAttributedString(probe).width(), 45);
    probe.font = VLRFonts::muli(fitted + 1);
    EXPECT_GT(layoutSizeForAttributedString(probe).width(), 45);

    // Fits at no size: ends at the smallest font instead of looping forever.
    field.reset(vlr_labelScalingFontCenteredInFrameStringAlignment(QRectF(0, 0, 0, 20), size, Qt::AlignHCenter));
    EXPECT_EQ(field->attributedStringValue().font.pixelSize(), 1);
}

TEST(LayoutAdditions, LayoutSizeOfAString)
{
    VLRAttributedString string;
    string.font = VLRFonts::muli(12);
    string.string = "Workspaces";
    const QSizeF one = layoutSizeForAttributedString(string);
    EXPECT_GT(one.width(), 40);
    EXPECT_GT(one.height(), 12);
    string.string = "Workspaces Workspaces";
    EXPECT_GT(layoutSizeForAttributedString(string).width(), 2 * one.width());
    // Lines are never wrapped, only broken where the text breaks them.
    string.string = "Workspaces\nWorkspaces";
    const QSizeF two = layoutSizeForAttributedString(string);
    EXPECT_DOUBLE_EQ(two.width(), one.width());
    EXPECT_DOUBLE_EQ(two.height(), 2 * one.height());
}

TEST(ApplicationAdditions, ModalSessionIsPolledWithoutBlockingTheLoop)
{
    QDialog dialog;
    const VLRModalSession session = VLRModalSession::beginModalSessionForWindow(&dialog);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(dialog.windowModality(), Qt::ApplicationModal);
    EXPECT_EQ(session.run(), VLRModalSession::VLRModalResponseContinue);

    bool finished = false;
    qint64 response = 0;
    vlr_runAsyncModalSessionCompletionHandler(session, [&](qint64 answer) {
        finished = true;
        response = answer;
    });
    EXPECT_FALSE(finished);

    // Timers go on running while the dialog is up, and the dialog's answer
    // comes through at a later poll.
    int otherTicks = 0;
    QTimer other;
    QObject::connect(&other, &QTimer::timeout, [&otherTicks] { ++otherTicks; });
    other.start(10);
    QTimer::singleShot(350, &dialog, [&dialog] { dialog.done(7); });
    waitFor(finished);
    EXPECT_TRUE(finished);
    EXPECT_EQ(response, 7);
    EXPECT_GT(otherTicks, 5);

    // A dialog that goes away without an answer ends the session with abort.
    auto* gone = new QDialog;
    const VLRModalSession goneSession = VLRModalSession::beginModalSessionForWindow(gone);
    bool ended = false;
    vlr_runAsyncModalSessionCompletionHandler(goneSession, [&](qint64 answer) {
        ended = true;
        response = answer;
    });
    delete gone;
    waitFor(ended);
    EXPECT_EQ(response, VLRModalSession::VLRModalResponseAbort);

    // No handler: the session still ends quietly.
    QDialog quiet;
    vlr_runAsyncModalSessionCompletionHandler(VLRModalSession::beginModalSessionForWindow(&quiet), nullptr);
    quiet.done(1);
    bool later = false;
    QTimer::singleShot(250, [&later] { later = true; });
    waitFor(later);
}

TEST(WindowAdditions, StatusItemWindowBecomesKeyOnlyWhileThePopoverShows)
{
    QWidget page;
    EXPECT_TRUE(vlr_canBecomeKeyWindow(&page));
    EXPECT_FALSE(vlr_canBecomeKeyWindow(nullptr));

    QWidget statusBarWindow;
    auto* item = new StatusItemImageView(QRect(0, 0, 24, 24), false, &statusBarWindow);
    vlr_setPopoverIsShownProvider(nullptr);
    EXPECT_FALSE(vlr_canBecomeKeyWindow(&statusBarWindow));
    EXPECT_FALSE(vlr_canBecomeKeyWindow(item));

    bool popoverShown = false;
    vlr_setPopoverIsShownProvider([&popoverShown] { return popoverShown; });
    EXPECT_FALSE(vlr_canBecomeKeyWindow(&statusBarWindow));
    popoverShown = true;
    EXPECT_TRUE(vlr_canBecomeKeyWindow(&statusBarWindow));
    EXPECT_TRUE(vlr_canBecomeKeyWindow(&page));
    vlr_setPopoverIsShownProvider(nullptr);
}
