#include "widgets/StatusItemImageView.h"
#include "widgets/StatusItemImageViewDelegate.h"
#include "widgets/VLRAnimation.h"
#include "widgets/WidgetTesting.h"

#include <gmock/gmock.h>

namespace {

// The view with a count of the pictures it has handed on.
struct StatusItem
{
    explicit StatusItem(bool supportsAnimation)
        : view(QRect(0, 0, 24, 24), supportsAnimation)
    {
        QObject::connect(&view, &VLRImageView::imageChanged, [this] { ++changes; });
    }
    void tick(int count = 1) { invokeTimes(&view, "animationTimer", count); }
    bool shows(const QPixmap& image) const { return view.image().cacheKey() == image.cacheKey(); }
    bool showsFrame(int frame) const { return shows(view.animationImages().value(frame)); }

    StatusItemImageView view;
    int changes = 0;
};

struct MockStatusItemDelegate : StatusItemImageViewDelegate
{
    MOCK_METHOD(void, statusItemImageViewDidReceiveDragEvent, (StatusItemImageView*), (override));
    MOCK_METHOD(void, statusItemImageViewDidReceiveMouseDownEvent, (StatusItemImageView*), (override));
    MOCK_METHOD(void, statusItemImageViewDidReceiveFiles, (StatusItemImageView*, const QStringList&), (override));
};

} // namespace

TEST(StatusItemImageView, AStatePictureShowsAtTheNextTickAndATickAtRestChangesNothing)
{
    StatusItem item(true);
    ASSERT_EQ(item.view.animationImages().size(), 33);
    // Eight ticks a second, from the start, for good.
    EXPECT_TRUE(item.view.animationTicker()->isActive());
    EXPECT_EQ(item.view.animationTicker()->interval(), 125);
    EXPECT_FALSE(item.view.animationTicker()->isSingleShot());
    // Signed out from the start: nothing before the first tick, then the
    // greyed-out picture, once.
    EXPECT_TRUE(item.view.image().isNull());
    item.tick();
    EXPECT_TRUE(item.shows(item.view.greyedOutImage()));
    item.tick(20);
    EXPECT_EQ(item.changes, 1);
    item.view.setViewState(2);
    EXPECT_TRUE(item.shows(item.view.greyedOutImage()));
    item.tick();
    EXPECT_TRUE(item.shows(item.view.solidImage()));
    EXPECT_EQ(item.changes, 2);

    // Without animation only state 2 is solid; busy is greyed out.
    StatusItem still(false);
    EXPECT_TRUE(still.view.animationImages().isEmpty());
    EXPECT_TRUE(still.view.animationTicker()->isActive());
    still.view.setViewState(3);
    still.tick();
    EXPECT_TRUE(still.shows(still.view.greyedOutImage()));
    still.view.setViewState(2);
    still.tick(10);
    EXPECT_TRUE(still.shows(still.view.solidImage()));
    EXPECT_EQ(still.changes, 2);
}

TEST(StatusItemImageView, BusyCycleRunsToItsEndWhateverTheStateDoes)
{
    StatusItem item(true);
    item.view.setViewState(3);
    item.tick();
    EXPECT_TRUE(item.showsFrame(0));
    item.tick(10);
    EXPECT_TRUE(item.showsFrame(10));
    // Signed out at frame 10: frames 11 to 32 still show, then the resting
    // picture of the new state, and the index rests.
    item.view.setViewState(1);
    for (int frame = 11; frame <= 32; ++frame) {
        item.tick();
        EXPECT_TRUE(item.showsFrame(frame)) << frame;
    }
    item.tick(5);
    EXPECT_TRUE(item.shows(item.view.greyedOutImage()));
    EXPECT_EQ(item.changes, 34);
    EXPECT_EQ(item.view.animationIndex(), 33u);

    // Busy, idle and busy again within one cycle: no break at all. Still
    // busy at its end, the next cycle begins at frame 0.
    item.view.setViewState(3);
    item.tick(5);
    item.view.setViewState(2);
    item.tick();
    item.view.setViewState(3);
    item.tick();
    EXPECT_TRUE(item.showsFrame(6));
    item.tick(26);
    EXPECT_TRUE(item.showsFrame(32));
    item.tick();
    EXPECT_TRUE(item.showsFrame(0));
}

TEST(StatusItemImageView, DarkModeSwapsTheSolidPictureAndKeepsTheTemplate)
{
    StatusItem item(true);
    item.view.setViewState(2);
    item.tick();
    const QPixmap lightSolid = item.view.solidImage();
    const QImage lightGreyed = item.view.greyedOutImage().toImage();
    // Replaced at once, shown at the next tick.
    item.view.setDarkMode(true);
    EXPECT_NE(item.view.solidImage().cacheKey(), lightSolid.cacheKey());
    EXPECT_TRUE(item.shows(lightSolid));
    item.tick();
    EXPECT_TRUE(item.shows(item.view.solidImage()));

    // The greyed-out picture is a template in dark mode, white where it is
    // drawn at all. Back to light it stays a template, now black, and the
    // solid picture is the light one again.
    const QPoint stroke(lightGreyed.width() / 2, lightGreyed.height() * 2 / 24);
    ASSERT_GT(lightGreyed.pixelColor(stroke).alpha(), 100);
    const QColor dark = item.view.greyedOutImage().toImage().pixelColor(stroke);
    EXPECT_EQ(dark.red(), 255);
    EXPECT_EQ(dark.alpha(), lightGreyed.pixelColor(stroke).alpha());
    item.view.setDarkMode(false);
    const QColor back = item.view.greyedOutImage().toImage().pixelColor(stroke);
    EXPECT_EQ(back.red(), 0);
    EXPECT_NE(back.rgb(), lightGreyed.pixelColor(stroke).rgb());
    EXPECT_EQ(item.view.solidImage().toImage(), lightSolid.toImage());
}

TEST(StatusItemImageView, ClicksDragsAndDropsGoToTheDelegate)
{
    testing::StrictMock<MockStatusItemDelegate> delegate;
    StatusItemImageView view(QRect(0, 0, 24, 24), true);
    view.simulateClick(); // without a delegate nothing is told, nothing fails
    view.setDelegate(&delegate);
    EXPECT_CALL(delegate, statusItemImageViewDidReceiveMouseDownEvent(&view)).Times(2);
    view.simulateClick();
    sendMouse(&view, QEvent::MouseButtonPress);

    // A drag without file paths is taken as well, and reports no files.
    EXPECT_CALL(delegate, statusItemImageViewDidReceiveDragEvent(&view)).Times(3);
    EXPECT_CALL(delegate, statusItemImageViewDidReceiveFiles(&view, QStringList({"/tmp/one.tif", "/tmp/two.tif"})));
    EXPECT_TRUE(sendDrop(&view, filesMimeData({"/tmp/one.tif", "/tmp/two.tif"}).get()));
    QMimeData text;
    text.setText("hello");
    EXPECT_TRUE(sendDragEnter(&view, &text));
    EXPECT_TRUE(sendDrop(&view, &text));
}

TEST(Animation, FrameByProgressEndsOnTheFirstPicture)
{
    QList<QPixmap> frames;
    for (int i = 0; i < 10; ++i)
        frames.append(QPixmap(4, 4));
    VLRImageView imageView;
    int changes = 0;
    QObject::connect(&imageView, &VLRImageView::imageChanged, [&changes] { ++changes; });
    VLRAnimation animation(1.5, QEasingCurve::InOutQuad);
    animation.setAnimationImages(frames);
    animation.setAnimationImageView(&imageView);
    // Frame 0 is where it starts: nothing to show yet. 10 × 0.39 cuts to 3,
    // as 10 × 0.35 does: one change.
    animation.setCurrentProgress(0.05f);
    EXPECT_EQ(changes, 0);
    animation.setCurrentProgress(0.35f);
    animation.setCurrentProgress(0.39f);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(imageView.image().cacheKey(), frames.at(3).cacheKey());
    animation.setCurrentProgress(1.0f);
    EXPECT_EQ(imageView.image().cacheKey(), frames.at(0).cacheKey());

    // Without frames or a view nothing fails.
    VLRAnimation empty(1, QEasingCurve::Linear);
    empty.setCurrentProgress(1.0f);
    EXPECT_EQ(empty.currentFrame(), 0);
}
