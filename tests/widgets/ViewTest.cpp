#include "widgets/VLRResponderView.h"
#include "widgets/VLRResponderViewDelegate.h"
#include "widgets/VLRView.h"
#include "widgets/VLRViewDelegate.h"
#include "widgets/WidgetTesting.h"

#include <QKeyEvent>
#include <QPushButton>

#include <gmock/gmock.h>

namespace {

struct MockViewDelegate : VLRViewDelegate
{
    MOCK_METHOD(void, viewDidReceiveDroppedFiles, (VLRView*, const QStringList&), (override));
    MOCK_METHOD(void, viewDidReceiveDraggingEvent, (VLRView*), (override));
};

struct MockResponderDelegate : VLRResponderViewDelegate
{
    MOCK_METHOD(void, responderViewFlagsChanged, (VLRResponderView*, QKeyEvent*), (override));
};

} // namespace

TEST(View, BorderSettersApplyAllThreeAndTheGradientFillsTheDirtyRectangle)
{
    // A colour alone brings the default width and radius along, and is drawn.
    VLRView view;
    view.resize(40, 40);
    view.setBorderColor(QColor(255, 0, 0));
    ASSERT_NE(view.layer(), nullptr);
    EXPECT_EQ(view.layer()->borderWidth, 2);
    EXPECT_EQ(view.layer()->cornerRadius, 3);
    EXPECT_EQ(rendered(&view).pixelColor(0, 20), QColor(255, 0, 0));
    // Without a colour of its own the layer keeps the one it has.
    VLRView bare;
    bare.setBorderWidth(4);
    EXPECT_EQ(bare.layer()->borderColor, QColor(Qt::black));
    EXPECT_EQ(bare.layer()->cornerRadius, 3);

    // A redraw of the lower half (rendered at the image's top) shows the
    // whole run of the gradient, black at its bottom to white at the half.
    VLRView gradient;
    gradient.resize(100, 100);
    gradient.setBackgroundGradient(VLRGradient(Qt::black, Qt::white, 90));
    const QImage image = rendered(&gradient, QRegion(0, 50, 100, 50));
    EXPECT_LT(image.pixelColor(50, 49).red(), 5);
    EXPECT_GT(image.pixelColor(50, 0).red(), 250);
    EXPECT_EQ(image.pixelColor(50, 75), QColor(Qt::white)); // not drawn
}

TEST(View, FileDragsReachTheDelegateOfADropTargetUnderARingDrawnOffCentre)
{
    testing::StrictMock<MockViewDelegate> delegate;
    QWidget window;
    auto* view = placed<VLRView>(&window, QRect(0, 0, 100, 80));
    view->setDelegate(&delegate);
    const auto files = filesMimeData({"/tmp/a.psd", "/tmp/b c.png"});
    // Not a drop target: refused, nothing told, no ring.
    EXPECT_FALSE(sendDragEnter(view, files.get()));
    EXPECT_FALSE(view->showDropTarget());

    // Entering twice without leaving tells the delegate twice.
    view->setDropTarget(true);
    EXPECT_CALL(delegate, viewDidReceiveDraggingEvent(view)).Times(2);
    EXPECT_TRUE(sendDragEnter(view, files.get()));
    EXPECT_TRUE(sendDragEnter(view, files.get()));
    testing::Mock::VerifyAndClearExpectations(&delegate);
    // The ring: x from 4 to 96, y from 3 to 75 (a point off centre), 2 wide
    // and blue, over a faint blue. From the frame, not the bounds: placed at
    // 10,10 it lies 10 further in.
    const auto ring = [](const QColor& color) { return color.blue() > 200 && color.red() < 100; };
    QImage image = rendered(view);
    EXPECT_TRUE(ring(image.pixelColor(50, 2)) && ring(image.pixelColor(3, 40)) && ring(image.pixelColor(50, 75)));
    EXPECT_EQ(image.pixelColor(50, 76), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(50, 40).blue(), 255);
    EXPECT_NEAR(image.pixelColor(50, 40).red(), 230, 2);
    view->move(10, 10);
    image = rendered(view);
    EXPECT_TRUE(!ring(image.pixelColor(50, 2)) && ring(image.pixelColor(50, 12)));
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(view, &leave);
    EXPECT_FALSE(view->showDropTarget());

    // A drop ends the drag; one without local file paths delivers nothing.
    EXPECT_CALL(delegate, viewDidReceiveDraggingEvent(view)).Times(2);
    EXPECT_CALL(delegate, viewDidReceiveDroppedFiles(view, QStringList({"/tmp/a.psd", "/tmp/b c.png"})));
    EXPECT_TRUE(sendDrop(view, files.get()));
    EXPECT_FALSE(view->showDropTarget());
    QMimeData remote;
    remote.setUrls({QUrl("https://example.org/a.psd")});
    EXPECT_TRUE(sendDrop(view, &remote));
}

TEST(View, ClickThroughViewsTakeClicksAheadOfChildrenWithTheUnconvertedPoint)
{
    VLRView page;
    page.resize(300, 200);
    auto* button = placed<QPushButton>(&page, QRect(20, 20, 80, 30));
    // A transparent sheet over the button that would take the click.
    auto* sheet = placed<QWidget>(&page, QRect(0, 0, 300, 200));
    auto* sheetChild = placed<QWidget>(sheet, QRect(150, 100, 50, 50));
    EXPECT_EQ(page.hitTest(QPointF(30, 30)), sheet);
    page.setClickThroughViews({button});
    EXPECT_EQ(page.hitTest(QPointF(30, 30)), button);
    EXPECT_EQ(page.hitTest(QPointF(160, 110)), sheetChild);
    EXPECT_EQ(page.hitTest(QPointF(400, 10)), nullptr);

    // Real clicks on the sheet, and on a child added to it later, land in the
    // button.
    int clicks = 0;
    QObject::connect(button, &QPushButton::clicked, [&clicks] { ++clicks; });
    const auto click = [](QWidget* widget, const QPointF& at) {
        sendMouse(widget, QEvent::MouseButtonPress, at);
        sendMouse(widget, QEvent::MouseButtonRelease, at);
    };
    click(sheet, QPointF(30, 30));
    EXPECT_EQ(clicks, 1);
    click(placed<QWidget>(sheet, QRect(20, 20, 40, 20)), QPointF(5, 5));
    EXPECT_EQ(clicks, 2);

    // A candidate deeper down is found by the converted point but asked with
    // the unconverted one, which it reads in its own parent's coordinates:
    // there the point misses it, and the answer is none, no child tried.
    auto* deepButton = placed<QPushButton>(placed<QWidget>(&page, QRect(100, 100, 150, 150)), QRect(10, 10, 40, 20));
    page.setClickThroughViews({deepButton});
    EXPECT_EQ(page.hitTest(QPointF(115, 115)), nullptr);
    deepButton->setGeometry(10, 10, 140, 120);
    EXPECT_EQ(page.hitTest(QPointF(115, 115)), deepButton);

    // A candidate that refuses every point in its own test gives none too.
    auto* deaf = placed<QWidget>(&page, QRect(0, 0, 50, 50));
    deaf->setAttribute(Qt::WA_TransparentForMouseEvents);
    page.setClickThroughViews({deaf, button});
    EXPECT_EQ(page.hitTest(QPointF(30, 30)), nullptr);
    click(sheet, QPointF(30, 30));
    EXPECT_EQ(clicks, 2);
}

TEST(View, TrackingOwnerHearsEnterMoveAndLeave)
{
    struct Owner : QObject
    {
        bool event(QEvent* event) override
        {
            types.append(event->type());
            return true;
        }
        QList<QEvent::Type> types;
    };
    auto owner = std::make_unique<Owner>();
    VLRView view;
    sendEnterOrLeave(&view, true);
    view.trackMouseWithOwner(owner.get());
    sendEnterOrLeave(&view, true);
    sendMouse(&view, QEvent::MouseMove);
    sendEnterOrLeave(&view, false);
    EXPECT_EQ(owner->types, QList<QEvent::Type>({QEvent::Enter, QEvent::MouseMove, QEvent::Leave}));
    // An owner that is gone hears nothing, and nothing breaks.
    owner.reset();
    sendEnterOrLeave(&view, true);
}

TEST(View, ResponderViewReportsModifierKeysAndPassesThemOn)
{
    testing::StrictMock<MockResponderDelegate> delegate;
    VLRResponderView view;
    EXPECT_EQ(view.focusPolicy(), Qt::StrongFocus);
    view.setResponderDelegate(&delegate);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Meta, Qt::ControlModifier | Qt::MetaModifier);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_Alt, Qt::ControlModifier);
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a");
    EXPECT_CALL(delegate, responderViewFlagsChanged(&view, &press));
    EXPECT_CALL(delegate, responderViewFlagsChanged(&view, &release));
    for (QKeyEvent* event : {&press, &release, &letter})
        QCoreApplication::sendEvent(&view, event);
    EXPECT_FALSE(press.isAccepted()); // on to the parent
}
