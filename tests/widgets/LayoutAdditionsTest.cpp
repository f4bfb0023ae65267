#include "widgets/StatusItemImageView.h"
#include "widgets/VLRApplicationAdditions.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRLabel.h"
#include "widgets/VLRModalSession.h"
#include "widgets/VLRTextFieldAdditions.h"
#include "widgets/VLRViewAdditions.h"
#include "widgets/VLRViewControllerAdditions.h"
#include "widgets/VLRWindowAdditions.h"
#include "widgets/WidgetTesting.h"

#include <QDialog>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

#include <optional>

namespace {

QList<qreal> constants(const QWidget* view)
{
    QList<qreal> list;
    for (const VLRLayoutConstraint& constraint : vlr_constraints(view))
        list.append(constraint.constant);
    return list;
}

} // namespace

TEST(LayoutAdditions, ConstraintsPlaceTheirFirstItemAndAChildControllerFillsItsHost)
{
    QWidget root;
    root.resize(300, 200);
    auto* name = placed<QWidget>(&root, QRect(10, 10, 100, 20));
    vlr_setTranslatesAutoresizingMaskIntoConstraints(name, false);
    vlr_addConstraint(&root, {name, VLRLayoutAttributeRight, &root, VLRLayoutAttributeRight, -8});
    vlr_addConstraint(&root, {name, VLRLayoutAttributeWidth, nullptr, VLRLayoutAttributeNotAnAttribute, 50});
    EXPECT_EQ(name->geometry(), QRect(242, 10, 50, 20));
    // A translated view keeps its frame whatever its constraints say.
    auto* free = placed<QWidget>(&root, QRect(5, 5, 10, 10));
    vlr_addConstraint(&root, {free, VLRLayoutAttributeLeft, &root, VLRLayoutAttributeLeft, 100});
    EXPECT_EQ(free->geometry(), QRect(5, 5, 10, 10));

    // Pinned by its edges, the page fills its host and follows its size.
    QWidget host;
    host.resize(300, 200);
    QWidget page;
    setParentView(&page, &host);
    EXPECT_FALSE(vlr_translatesAutoresizingMaskIntoConstraints(&page));
    EXPECT_EQ(page.geometry(), QRect(0, 0, 300, 200));
    host.resize(420, 380);
    host.show();
    EXPECT_EQ(page.geometry(), QRect(0, 0, 420, 380));
}

TEST(LayoutAdditions, RemovingOneConstraintBySearchOrAllThatTieAView)
{
    QWidget root;
    auto* a = new QWidget(&root);
    auto* b = new QWidget(&root);
    vlr_addConstraint(&root, {a, VLRLayoutAttributeTop, &root, VLRLayoutAttributeTop, 1});
    vlr_addConstraint(&root, {a, VLRLayoutAttributeTop, b, VLRLayoutAttributeBottom, 2});
    vlr_addConstraint(&root, {a, VLRLayoutAttributeTop, &root, VLRLayoutAttributeBottom, 3});
    vlr_addConstraint(&root, {a, VLRLayoutAttributeLeft, &root, VLRLayoutAttributeLeft, 4});
    vlr_addConstraint(&root, {a, VLRLayoutAttributeTop, b, VLRLayoutAttributeTop, 5});
    const auto removeOne = &vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute;
    // Nothing matches: false, nothing changes. Only the view's own count.
    EXPECT_FALSE(removeOne(&root, b, VLRLayoutAttributeTop, nullptr, VLRLayoutAttributeNotAnAttribute));
    EXPECT_FALSE(removeOne(&root, a, VLRLayoutAttributeRight, nullptr, VLRLayoutAttributeNotAnAttribute));
    EXPECT_FALSE(removeOne(&root, a, VLRLayoutAttributeTop, b, VLRLayoutAttributeLeft));
    EXPECT_FALSE(removeOne(a, a, VLRLayoutAttributeTop, nullptr, VLRLayoutAttributeNotAnAttribute));
    EXPECT_EQ(constants(&root), QList<qreal>({1, 2, 3, 4, 5}));
    // Second item and attribute given: both must match.
    EXPECT_TRUE(removeOne(&root, a, VLRLayoutAttributeTop, b, VLRLayoutAttributeTop));
    EXPECT_EQ(constants(&root), QList<qreal>({1, 2, 3, 4}));
    // Only the attribute: whatever the second item, the first in order.
    EXPECT_TRUE(removeOne(&root, a, VLRLayoutAttributeTop, nullptr, VLRLayoutAttributeBottom));
    EXPECT_EQ(constants(&root), QList<qreal>({1, 3, 4}));
    // Only the item.
    EXPECT_TRUE(removeOne(&root, a, VLRLayoutAttributeTop, &root, VLRLayoutAttributeNotAnAttribute));
    EXPECT_EQ(constants(&root), QList<qreal>({3, 4}));
    // Neither: the first with that first item and attribute, one only.
    vlr_addConstraint(&root, {a, VLRLayoutAttributeLeft, b, VLRLayoutAttributeRight, 6});
    EXPECT_TRUE(removeOne(&root, a, VLRLayoutAttributeLeft, nullptr, VLRLayoutAttributeNotAnAttribute));
    EXPECT_EQ(constants(&root), QList<qreal>({3, 6}));

    // All of a view's: those that tie it, first or second, in every ancestor,
    // then its own; its mask is translated again.
    auto* panel = new QWidget(&root);
    auto* button = new QWidget(panel);
    vlr_addConstraint(&root, {button, VLRLayoutAttributeTop, &root, VLRLayoutAttributeTop, 7});
    vlr_addConstraint(&root, {b, VLRLayoutAttributeLeft, button, VLRLayoutAttributeRight, 8});
    vlr_addConstraint(panel, {button, VLRLayoutAttributeLeft, panel, VLRLayoutAttributeLeft, 9});
    vlr_addConstraint(button, {button, VLRLayoutAttributeWidth, nullptr, VLRLayoutAttributeNotAnAttribute, 10});
    vlr_setTranslatesAutoresizingMaskIntoConstraints(button, false);
    vlr_removeAllConstraints(button);
    EXPECT_EQ(constants(&root), QList<qreal>({3, 6}));
    EXPECT_TRUE(vlr_constraints(panel).isEmpty());
    EXPECT_TRUE(vlr_constraints(button).isEmpty());
    EXPECT_TRUE(vlr_translatesAutoresizingMaskIntoConstraints(button));
    vlr_removeAllConstraints(nullptr);
}

TEST(LayoutAdditions, CentredLabelArithmetic)
{
    VLRAttributedString sixteen;
    sixteen.string = "Uploads";
    for (int pixels = 1; pixels < 60 && sixteen.size().height() != 16; ++pixels)
        sixteen.font = VLRFonts::muli(pixels);
    ASSERT_EQ(sixteen.size().height(), 16);

    // The text field's constructor: the text's height, y not rounded. A frame
    // 20 high with offset 1: y is the frame's plus 3.
    std::unique_ptr<VLRTextField> field(
        vlr_labelCenteredInFrameAttributedStringVerticalOffset(QRectF(0, 7, 50, 20), sixteen, 1));
    EXPECT_EQ(field->frame(), QRectF(0, 10, 50, 16));
    field.reset(vlr_labelCenteredInFrameAttributedStringVerticalOffset(QRectF(0, 7, 50, 21), sixteen, 1));
    EXPECT_EQ(field->frame().y(), 10.5);

    // The label's constructor: 3 taller with offset -3, y rounded in single
    // precision, halves away from zero: 15 − 9.5 − 3 = 2.5 gives 3, and
    // −37.5 gives −38. A label never takes a click.
    std::unique_ptr<VLRLabel> label(
        VLRLabel::labelCenteredInFrameAttributedStringVerticalOffset(QRectF(0, 0, 100, 30), sixteen, -3));
    EXPECT_EQ(label->frame(), QRectF(0, 3, 100, 19));
    EXPECT_EQ(VLRLabel::labelFrameCenteredInFrame(QRectF(0, -40, 100, 30), sixteen, -3).y(), -38);
    EXPECT_TRUE(label->testAttribute(Qt::WA_TransparentForMouseEvents));
}

TEST(LayoutAdditions, LabelsFromPlainStringsTruncateOrShrinkToFit)
{
    std::unique_ptr<VLRTextField> field(
        vlr_labelCenteredInFrameStringAlignment(QRectF(0, 0, 80, 20), "A rather long file name.psd", Qt::AlignLeft));
    const VLRAttributedString value = field->attributedStringValue();
    EXPECT_EQ(value.lineBreakMode, Qt::ElideMiddle);
    EXPECT_EQ(field->frame().y(), 10 - 0.5 * value.size().height() + 1);

    // Fits at 12: stays 12, not truncated.
    field.reset(vlr_labelScalingFontCenteredInFrameStringAlignment(QRectF(0, 0, 100, 20), "1.2 MB", Qt::AlignHCenter));
    EXPECT_EQ(field->attributedStringValue().font.pixelSize(), 12);
    EXPECT_EQ(field->attributedStringValue().lineBreakMode, Qt::ElideNone);
    // Too wide: a point smaller at a time until it fits; fits at no size:
    // ends at the smallest font instead of looping forever.
    field.reset(
        vlr_labelScalingFontCenteredInFrameStringAlignment(QRectF(0, 0, 50, 20), "1,023.9 MB", Qt::AlignHCenter));
    VLRAttributedString fitted = field->attributedStringValue();
    EXPECT_LT(fitted.font.pixelSize(), 12);
    EXPECT_LE(layoutSizeForAttributedString(fitted).width(), 50);
    fitted.font = VLRFonts::muli(fitted.font.pixelSize() + 1);
    EXPECT_GT(layoutSizeForAttributedString(fitted).width(), 50);
    field.reset(
        vlr_labelScalingFontCenteredInFrameStringAlignment(QRectF(0, 0, 0, 20), "1,023.9 MB", Qt::AlignHCenter));
    EXPECT_EQ(field->attributedStringValue().font.pixelSize(), 1);

    // Lines are never wrapped, only broken where the text breaks them.
    const QSizeF one = layoutSizeForAttributedString(value);
    VLRAttributedString twoLines = value;
    twoLines.string = value.string + "\n" + value.string;
    EXPECT_EQ(layoutSizeForAttributedString(twoLines), QSizeF(one.width(), 2 * one.height()));
}

TEST(ApplicationAdditions, ModalSessionIsPolledWithoutBlockingTheLoop)
{
    QDialog dialog;
    const VLRModalSession session = VLRModalSession::beginModalSessionForWindow(&dialog);
    EXPECT_EQ(dialog.windowModality(), Qt::ApplicationModal);
    std::optional<qint64> response;
    vlr_runAsyncModalSessionCompletionHandler(session, [&response](qint64 answer) { response = answer; });
    EXPECT_FALSE(response);

    // The call came back at once; the dialog's answer comes at a later poll.
    QTimer::singleShot(350, &dialog, [&dialog] { dialog.done(7); });
    EXPECT_TRUE(QTest::qWaitFor([&response] { return response.has_value(); }, 10000));
    EXPECT_EQ(response, 7);

    // Without a handler the session ends quietly; a dialog that goes away
    // without an answer ends it with abort.
    QDialog quiet;
    vlr_runAsyncModalSessionCompletionHandler(VLRModalSession::beginModalSessionForWindow(&quiet), nullptr);
    quiet.done(1);
    auto* gone = new QDialog;
    response.reset();
    vlr_runAsyncModalSessionCompletionHandler(VLRModalSession::beginModalSessionForWindow(gone),
                                              [&response](qint64 answer) { response = answer; });
    delete gone;
    EXPECT_TRUE(QTest::qWaitFor([&response] { return response.has_value(); }, 10000));
    EXPECT_EQ(response, VLRModalSession::VLRModalResponseAbort);
}

TEST(WindowAdditions, StatusItemWindowBecomesKeyOnlyWhileThePopoverShows)
{
    QWidget page;
    QWidget statusBarWindow;
    new StatusItemImageView(QRect(0, 0, 24, 24), false, &statusBarWindow);
    EXPECT_TRUE(vlr_canBecomeKeyWindow(&page));
    EXPECT_FALSE(vlr_canBecomeKeyWindow(nullptr));
    EXPECT_FALSE(vlr_canBecomeKeyWindow(&statusBarWindow));

    bool popoverShown = false;
    vlr_setPopoverIsShownProvider([&popoverShown] { return popoverShown; });
    EXPECT_FALSE(vlr_canBecomeKeyWindow(&statusBarWindow));
    popoverShown = true;
    EXPECT_TRUE(vlr_canBecomeKeyWindow(&statusBarWindow));
    vlr_setPopoverIsShownProvider(nullptr);
}
