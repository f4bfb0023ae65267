#include "widgets/StatusItemImageView.h"
#include "widgets/StatusItemImageViewDelegate.h"
#include "widgets/VLRAnimation.h"

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QImage>
#include <QMimeData>
#include <QUrl>

#include <gmock/gmock.h>

namespace {

class StatusItem
{
public:
    explicit StatusItem(bool supportsAnimation)
        : view(QRect(0, 0, 24, 24), supportsAnimation)
    {
        QObject::connect(&view, &VLRImageView::imageChanged, [this] { ++changes; });
    }

    void tick(int count = 1)
    {
        for (int i = 0; i < count; ++i)
            ASSERT_TRUE(QMetaObject::invokeMethod(&view, "__animationTimer"));
    }

    bool shows(const QPixmap& image) const { return view.image().cacheKey() == image.cacheKey(); }
    bool showsFrame(int frame) const { return shows(view.animationImages().at(frame)); }

    StatusItemImageView view;
    int changes = 0;
};

class RecordingDelegate : public StatusItemImageViewDelegate
{
public:
    void statusItemImageViewDidReceiveDragEvent(StatusItemImageView*) override { ++drags; }
    void statusItemImageViewDidReceiveMouseDownEvent(StatusItemImageView*) override { ++clicks; }
    void statusItemImageViewDidReceiveFiles(StatusItemImageView*, const QStringList& received) override
    {
        files.append(received);
    }
    int drags = 0;
    int clicks = 0;
    QList<QStringList> files;
};

} // namespace

TEST(StatusItemImageView, StartsSignedOutWithAllFramesAndATimerThatNeverStops)
{
    StatusItem item(true);
    EXPECT_EQ(item.view.viewState(), 1);
    EXPECT_TRUE(item.view.supportsAnimation());
    ASSERT_EQ(item.view.animationImages().size(), 33);
    EXPECT_EQ(item.view.animationIndex(), 0u);
    EXPECT_TRUE(item.view.animationTimer()->isActive());
    EXPECT_EQ(item.view.animationTimer()->interval(), 125);
    EXPECT_FALSE(item.view.greyedOutImage().isNull());
    EXPECT_FALSE(item.view.solidImage().isNull());

    // Nothing shows before the first tick; then the greyed-out picture, once.
    EXPECT_TRUE(item.view.image().isNull());
    item.tick();
    EXPECT_TRUE(item.shows(item.view.greyedOutImage()));
    EXPECT_EQ(item.changes, 1);
    item.tick(20);
    EXPECT_EQ(item.changes, 1);

    // Setting the state only stores it: the picture follows at the next tick.
    item.view.setViewState(2);
    EXPECT_TRUE(item.shows(item.view.greyedOutImage()));
    item.tick();
    EXPECT_TRUE(item.shows(item.view.solidImage()));
    EXPECT_EQ(item.changes, 2);
    EXPECT_EQ(item.view.animationIndex(), 0u);
}

TEST(StatusItemImageView, BusyCycleRunsToItsEndWhateverTheStateDoes)
{
    StatusItem item(true);
    item.view.setViewState(3);
    item.tick();
    EXPECT_TRUE(item.showsFrame(0));
    item.tick(10);
    EXPECT_TRUE(item.showsFrame(10));
    EXPECT_EQ(item.view.animationIndex(), 11u);

    // Signed out at frame 10: frames 11 to 32 still show, then the resting
    // picture of the new state.
    item.view.setViewState(1);
    for (int frame = 11; frame <= 32; ++frame) {
        item.tick();
        EXPECT_TRUE(item.showsFrame(frame)) << frame;
    }
    EXPECT_EQ(item.changes, 33);
    item.tick();
    EXPECT_TRUE(item.shows(item.view.greyedOutImage()));
    EXPECT_EQ(item.view.animationIndex(), 33u);
    item.tick(5);
    EXPECT_EQ(item.view.animationIndex(), 33u);
    EXPECT_EQ(item.changes, 34);

    // Busy, idle and busy again within one cycle: no break at all.
    item.view.setViewState(3);
    item.tick(5);
    EXPECT_TRUE(item.showsFrame(4));
    item.view.setViewState(2);
    item.tick();
    item.view.setViewState(3);
    item.tick();
    EXPECT_TRUE(item.showsFrame(6));
    // Still busy at the end of the cycle: the next begins at frame 0.
    item.tick(26);
    EXPECT_TRUE(item.showsFrame(32));
    item.tick();
    EXPECT_TRUE(item.showsFrame(0));
    EXPECT_EQ(item.view.animationIndex(), 67u);
}

TEST(StatusItemImageView, WithoutAnimationOnlyTheSolidStateIsSolid)
{
    StatusItem item(false);
    EXPECT_TRUE(item.view.animationImages().isEmpty());
    EXPECT_TRUE(item.view.animationTimer()->isActive());
    item.view.setViewState(3);
    item.tick();
    EXPECT_TRUE(item.shows(item.view.greyedOutImage()));
    item.view.setViewState(2);
    item.tick();
    EXPECT_TRUE(item.shows(item.view.solidImage()));
    item.tick(10);
    EXPECT_EQ(item.changes, 2);
    EXPECT_EQ(item.view.animationIndex(), 0u);
}

TEST(StatusItemImageView, DarkModeSwapsTheSolidPictureAndKeepsTheTemplate)
{
    StatusItem item(true);
    item.view.setViewState(2);
    item.tick();
    const QPixmap lightSolid = item.view.solidImage();
    const QPixmap lightGreyed = item.view.greyedOutImage();
    EXPECT_TRUE(item.shows(lightSolid));

    item.view.setDarkMode(true);
    EXPECT_TRUE(item.view.isDarkMode());
    // Replaced at once, shown at the next tick.
    EXPECT_NE(item.view.solidImage().cacheKey(), lightSolid.cacheKey());
    EXPECT_TRUE(item.shows(lightSolid));
    item.tick();
    EXPECT_TRUE(item.shows(item.view.solidImage()));

    // The greyed-out picture is a template in dark mode: white where it is
    // drawn at all.
    const QImage darkGreyed = item.view.greyedOutImage().toImage();
    const QImage lightGreyedImage = lightGreyed.toImage();
    const QPoint stroke(darkGreyed.width() / 2, darkGreyed.height() * 2 / 24);
    ASSERT_GT(lightGreyedImage.pixelColor(stroke).alpha(), 100);
    EXPECT_EQ(darkGreyed.pixelColor(stroke).red(), 255);
    EXPECT_EQ(darkGreyed.pixelColor(stroke).alpha(), lightGreyedImage.pixelColor(stroke).alpha());

    // Back to light: the template stays, now dark; the solid one is light
    // again.
    item.view.setDarkMode(false);
    const QImage backGreyed = item.view.greyedOutImage().toImage();
    EXPECT_EQ(backGreyed.pixelColor(stroke).red(), 0);
    EXPECT_NE(backGreyed.pixelColor(stroke).rgb(), lightGreyedImage.pixelColor(stroke).rgb());
    EXPECT_EQ(item.view.solidImage().toImage(), lightSolid.toImage());

    // In state 1 the mode's solid picture does not show.
    item.view.setViewState(1);
    item.tick();
    EXPECT_TRUE(item.shows(item.view.greyedOutImage()));
}

TEST(StatusItemImageView, ClicksDragsAndDropsGoToTheDelegate)
{
    RecordingDelegate delegate;
    StatusItemImageView view(QRect(0, 0, 24, 24), true);
    // Without a delegate nothing is told and nothing fails.
    view.simulateClick();

    view.setDelegate(&delegate);
    view.simulateClick();
    EXPECT_EQ(delegate.clicks, 1);
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(3, 3), QPointF(3, 3), QPointF(3, 3), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &press);
    EXPECT_EQ(delegate.clicks, 2);

    QMimeData files;
    files.setUrls({QUrl::fromLocalFile("/tmp/one.tif"), QUrl::fromLocalFile("/tmp/two.tif")});
    QDragEnterEvent enter(QPoint(3, 3), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &enter);
    EXPECT_TRUE(enter.isAccepted());
    EXPECT_EQ(enter.dropAction(), Qt::CopyAction);
    EXPECT_EQ(delegate.drags, 1);
    QDropEvent drop(QPointF(3, 3), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &drop);
    EXPECT_TRUE(drop.isAccepted());
    ASSERT_EQ(delegate.files.size(), 1);
    EXPECT_EQ(delegate.files.first(), QStringList({"/tmp/one.tif", "/tmp/two.tif"}));

    // A drag without file paths is accepted and reports nothing.
    QMimeData text;
    text.setText("hello");
    QDragEnterEvent textEnter(QPoint(3, 3), Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &textEnter);
    EXPECT_TRUE(textEnter.isAccepted());
    QDropEvent textDrop(QPointF(3, 3), Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &textDrop);
    EXPECT_TRUE(textDrop.isAccepted());
    EXPECT_EQ(delegate.files.size(), 1);
}

TEST(Animation, FrameByProgressEndsOnTheFirstPicture)
{
    QList<QPixmap> frames;
    for (int i = 0; i < 10; ++i) {
        QPixmap frame(4, 4);
        frame.fill(QColor(i * 20, 0, 0));
        frames.append(frame);
    }
    VLRImageView imageView;
    int changes = 0;
    QObject::connect(&imageView, &VLRImageView::imageChanged, [&changes] { ++changes; });
    VLRAnimation animation(1.5, QEasingCurve::InOutQuad);
    EXPECT_EQ(animation.duration(), 1500);
    animation.setAnimationImages(frames);
    animation.setAnimationImageView(&imageView);

    // Frame 0 is where it starts: nothing to show yet.
    animation.setCurrentProgress(0.05f);
    EXPECT_EQ(animation.currentFrame(), 0);
    EXPECT_EQ(changes, 0);
    animation.setCurrentProgress(0.35f);
    EXPECT_EQ(animation.currentFrame(), 3);
    EXPECT_EQ(imageView.image().cacheKey(), frames.at(3).cacheKey());
    // 10 × 0.39 cuts to 3: no change.
    animation.setCurrentProgress(0.39f);
    EXPECT_EQ(changes, 1);
    animation.setCurrentProgress(0.999f);
    EXPECT_EQ(animation.currentFrame(), 9);
    animation.setCurrentProgress(1.0f);
    EXPECT_EQ(animation.currentFrame(), 0);
    EXPECT_EQ(imageView.image().cacheKey(), frames.at(0).cacheKey());
    EXPECT_FLOAT_EQ(animation.currentProgress(), 1.0f);
    EXPECT_DOUBLE_EQ(animation.currentValue(), 1.0);

    // Without frames or a view nothing fails.
    VLRAnimation empty(1, QEasingCurve::Linear);
    empty.setCurrentProgress(0.5f);
    empty.setCurrentProgress(1.0f);
    EXPECT_EQ(empty.currentFrame(), 0);
}
