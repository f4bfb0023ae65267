#include "widgets/VLRResponderView.h"
#include "widgets/VLRResponderViewDelegate.h"
#include "widgets/VLRView.h"
#include "widgets/VLRViewDelegate.h"

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QImage>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QUrl>

#include <gmock/gmock.h>

namespace {

class RecordingViewDelegate : public VLRViewDelegate
{
public:
    void viewDidReceiveDroppedFiles(VLRView* view, const QStringList& files) override
    {
        droppedOn = view;
        drops.append(files);
    }
    void viewDidReceiveDraggingEvent(VLRView*) override { ++draggingEvents; }

    VLRView* droppedOn = nullptr;
    QList<QStringList> drops;
    int draggingEvents = 0;
};

std::unique_ptr<QMimeData> filesMimeData(const QStringList& paths)
{
    auto data = std::make_unique<QMimeData>();
    QList<QUrl> urls;
    for (const QString& path : paths)
        urls.append(QUrl::fromLocalFile(path));
    data->setUrls(urls);
    return data;
}

bool sendDragEnter(QWidget* widget, const QMimeData* data)
{
    QDragEnterEvent event(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
    return event.isAccepted() && event.dropAction() == Qt::CopyAction;
}

// Qt delivers a drop only to a widget that a drag has entered.
bool sendDrop(QWidget* widget, const QMimeData* data)
{
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &enter);
    QDropEvent event(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
    return event.isAccepted();
}

void sendClick(QWidget* widget, const QPointF& position)
{
    const QPointF global = widget->mapToGlobal(position);
    QMouseEvent press(QEvent::MouseButtonPress, position, position, global, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &press);
    QMouseEvent release(QEvent::MouseButtonRelease, position, position, global, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &release);
}

QImage render(QWidget* widget, const QRegion& region = QRegion())
{
    QImage image(widget->size(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    widget->render(&image, QPoint(), region, QWidget::DrawChildren);
    return image;
}

} // namespace

TEST(View, BorderSettersApplyAllThreeWithTheirDefaults)
{
    VLRView view;
    EXPECT_EQ(view.borderWidth(), 2);
    EXPECT_EQ(view.borderCornerRadius(), 3);
    // Nothing asked for a layer yet.
    EXPECT_EQ(view.layer(), nullptr);

    // A colour alone brings the default width and radius along.
    view.setBorderColor(Qt::red);
    ASSERT_NE(view.layer(), nullptr);
    EXPECT_EQ(view.layer()->borderColor, QColor(Qt::red));
    EXPECT_EQ(view.layer()->borderWidth, 2);
    EXPECT_EQ(view.layer()->cornerRadius, 3);

    // A page's root view: width 1, no radius.
    view.setBorderWidth(1);
    view.setBorderCornerRadius(0);
    EXPECT_EQ(view.layer()->borderWidth, 1);
    EXPECT_EQ(view.layer()->cornerRadius, 0);
    EXPECT_EQ(view.layer()->borderColor, QColor(Qt::red));

    // Without a colour of its own the layer keeps the one it has: black.
    VLRView bare;
    bare.setBorderWidth(4);
    EXPECT_EQ(bare.layer()->borderColor, QColor(Qt::black));
    EXPECT_EQ(bare.layer()->borderWidth, 4);
    EXPECT_EQ(bare.layer()->cornerRadius, 3);

    // A background colour does not touch the border.
    VLRView coloured;
    coloured.setBackgroundColor(QColor(233, 233, 233));
    EXPECT_EQ(coloured.layer()->borderWidth, 0);
    EXPECT_EQ(coloured.layer()->backgroundColor, QColor(233, 233, 233));
}

TEST(View, PaintsBackgroundBorderAndGradientIntoTheDirtyRectangle)
{
    VLRView view;
    view.resize(40, 40);
    view.setBackgroundColor(QColor(0, 255, 0));
    view.setBorderColor(QColor(255, 0, 0));
    view.setBorderWidth(2);
    view.setBorderCornerRadius(0);
    QImage image = render(&view);
    EXPECT_EQ(image.pixelColor(20, 20), QColor(0, 255, 0));
    EXPECT_EQ(image.pixelColor(0, 20), QColor(255, 0, 0));
    EXPECT_EQ(image.pixelColor(39, 39), QColor(255, 0, 0));

    // The gradient runs over the dirty rectangle, not the bounds: a redraw of
    // the lower half (rendered at the image's top) shows the whole run from
    // black at the bottom to white at the half.
    VLRView gradientView;
    gradientView.resize(100, 100);
    gradientView.setBackgroundGradient(VLRGradient(Qt::black, Qt::white, 90));
    image = render(&gradientView, QRegion(0, 50, 100, 50));
    EXPECT_LT(image.pixelColor(50, 49).red(), 5);
    EXPECT_GT(image.pixelColor(50, 0).red(), 250);
    EXPECT_EQ(image.pixelColor(50, 75), QColor(Qt::white)); // not drawn

    // Over the whole view, and at 0 degrees from left to right.
    image = render(&gradientView);
    EXPECT_LT(image.pixelColor(50, 99).red(), 5);
    EXPECT_GT(image.pixelColor(50, 0).red(), 250);
    gradientView.setBackgroundGradient(VLRGradient(Qt::black, Qt::white, 0));
    image = render(&gradientView);
    EXPECT_LT(image.pixelColor(0, 50).red(), 5);
    EXPECT_GT(image.pixelColor(99, 50).red(), 250);
}

TEST(View, FileDragsReachTheDelegateOnlyOnADropTarget)
{
    RecordingViewDelegate delegate;
    VLRView view;
    view.resize(100, 60);
    view.setDelegate(&delegate);
    const auto files = filesMimeData({"/tmp/a.psd", "/tmp/b c.png"});

    // Not a drop target: refused, nothing told, no ring.
    EXPECT_FALSE(sendDragEnter(&view, files.get()));
    EXPECT_EQ(delegate.draggingEvents, 0);
    EXPECT_FALSE(view.showDropTarget());

    view.setDropTarget(true);
    EXPECT_TRUE(sendDragEnter(&view, files.get()));
    EXPECT_TRUE(view.showDropTarget());
    // A second entry without leaving tells the delegate again.
    EXPECT_TRUE(sendDragEnter(&view, files.get()));
    EXPECT_EQ(delegate.draggingEvents, 2);

    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(&view, &leave);
    EXPECT_FALSE(view.showDropTarget());

    EXPECT_TRUE(sendDrop(&view, files.get()));
    EXPECT_FALSE(view.showDropTarget());
    ASSERT_EQ(delegate.drops.size(), 1);
    EXPECT_EQ(delegate.droppedOn, &view);
    EXPECT_EQ(delegate.drops.first(), QStringList({"/tmp/a.psd", "/tmp/b c.png"}));

    // A drop without file paths is taken and delivers nothing.
    QMimeData text;
    text.setText("just words");
    EXPECT_TRUE(sendDrop(&view, &text));
    QMimeData remote;
    remote.setUrls({QUrl("https://example.org/a.psd")});
    EXPECT_TRUE(sendDrop(&view, &remote));
    EXPECT_EQ(delegate.drops.size(), 1);
}

TEST(View, DrawsTheDropRingOffCentreFromTheFrame)
{
    QWidget window;
    window.resize(120, 120);
    auto* view = new VLRView(&window);
    view->setGeometry(0, 0, 100, 80);
    view->setDropTarget(true);
    const auto files = filesMimeData({"/tmp/a"});
    sendDragEnter(view, files.get());

    const QImage image = render(view);
    // The ring: x from 4 to 96, y from 3 to 75, 2 wide, blue; inside a faint
    // blue fill.
    EXPECT_GT(image.pixelColor(50, 3).blue(), 200);
    EXPECT_LT(image.pixelColor(50, 3).red(), 100);
    EXPECT_GT(image.pixelColor(4, 40).blue(), 200);
    EXPECT_LT(image.pixelColor(4, 40).red(), 100);
    EXPECT_GT(image.pixelColor(50, 75).blue(), 200);
    EXPECT_LT(image.pixelColor(50, 75).red(), 100);
    EXPECT_EQ(image.pixelColor(50, 79), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(50, 0), QColor(Qt::white));
    const QColor inside = image.pixelColor(50, 40);
    EXPECT_EQ(inside.blue(), 255);
    EXPECT_NEAR(inside.red(), 230, 2);

    // The frame, not the bounds: a view placed at 10,10 draws its ring 10
    // further in as well.
    view->move(10, 10);
    const QImage moved = render(view);
    EXPECT_EQ(moved.pixelColor(50, 3), QColor(Qt::white));
    EXPECT_GT(moved.pixelColor(50, 13).blue(), 200);
    EXPECT_LT(moved.pixelColor(50, 13).red(), 100);
}

TEST(View, ClickThroughViewsTakeClicksAheadOfChildrenWithTheUnconvertedPoint)
{
    VLRView page;
    page.resize(300, 200);
    auto* button = new QPushButton(&page);
    button->setGeometry(20, 20, 80, 30);
    // A transparent sheet over the button that would take the click.
    auto* sheet = new QWidget(&page);
    sheet->setGeometry(0, 0, 300, 200);
    auto* sheetChild = new QWidget(sheet);
    sheetChild->setGeometry(150, 100, 50, 50);

    // Without click-through views the platform's answer: the topmost child.
    EXPECT_EQ(page.hitTest(QPointF(30, 30)), sheet);
    EXPECT_EQ(page.hitTest(QPointF(160, 110)), sheetChild);
    EXPECT_EQ(page.hitTest(QPointF(400, 10)), nullptr);

    page.setClickThroughViews({button});
    EXPECT_EQ(page.hitTest(QPointF(30, 30)), button);
    EXPECT_EQ(page.hitTest(QPointF(160, 110)), sheetChild);

    // A real click on the sheet lands in the button.
    int clicks = 0;
    QObject::connect(button, &QPushButton::clicked, [&clicks] { ++clicks; });
    sendClick(sheet, QPointF(30, 30));
    EXPECT_EQ(clicks, 1);
    // Also on a child added to the sheet later.
    auto* later = new QWidget(sheet);
    later->setGeometry(20, 20, 40, 20);
    sendClick(later, QPointF(5, 5));
    EXPECT_EQ(clicks, 2);
    // Elsewhere the sheet keeps its clicks.
    sendClick(sheet, QPointF(200, 20));
    EXPECT_EQ(clicks, 2);

    // A candidate deeper down is found by the converted point but asked with
    // the unconverted one, which it reads in its own parent's coordinates:
    // there the point misses it, and the answer is none, no child tried.
    auto* panel = new QWidget(&page);
    panel->setGeometry(100, 100, 150, 150);
    auto* deepButton = new QPushButton(panel);
    deepButton->setGeometry(10, 10, 40, 20);
    page.setClickThroughViews({deepButton});
    EXPECT_EQ(page.hitTest(QPointF(115, 115)), nullptr);
    // Where the unconverted point happens to fall on it, it answers.
    deepButton->setGeometry(10, 10, 140, 120);
    EXPECT_EQ(page.hitTest(QPointF(115, 115)), deepButton);

    // A candidate that refuses every point in its own test gives none either.
    auto* deaf = new QWidget(&page);
    deaf->setGeometry(0, 0, 50, 50);
    deaf->setAttribute(Qt::WA_TransparentForMouseEvents);
    page.setClickThroughViews({deaf, button});
    EXPECT_EQ(page.hitTest(QPointF(30, 30)), nullptr);
    sendClick(sheet, QPointF(30, 30));
    EXPECT_EQ(clicks, 2);
}

TEST(View, TrackingOwnerHearsEnterLeaveAndMoves)
{
    class Owner : public QObject
    {
    public:
        bool event(QEvent* event) override
        {
            types.append(event->type());
            return true;
        }
        QList<QEvent::Type> types;
    };
    auto owner = std::make_unique<Owner>();
    VLRView view;
    view.resize(50, 50);
    QEnterEvent enter(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
    QCoreApplication::sendEvent(&view, &enter);
    EXPECT_TRUE(owner->types.isEmpty());

    view.trackMouseWithOwner(owner.get());
    EXPECT_TRUE(view.hasMouseTracking());
    QCoreApplication::sendEvent(&view, &enter);
    QMouseEvent move(QEvent::MouseMove, QPointF(2, 2), QPointF(2, 2), QPointF(2, 2), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &move);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&view, &leave);
    EXPECT_EQ(owner->types, QList<QEvent::Type>({QEvent::Enter, QEvent::MouseMove, QEvent::Leave}));

    // An owner that is gone hears nothing, and nothing breaks.
    owner.reset();
    QCoreApplication::sendEvent(&view, &enter);
    EXPECT_EQ(view.trackingAreaOwner(), nullptr);
}

TEST(View, ResponderViewReportsModifierKeysAndPassesThemOn)
{
    class Delegate : public VLRResponderViewDelegate
    {
    public:
        void responderViewFlagsChanged(VLRResponderView*, QKeyEvent* event) override
        {
            keys.append({event->type(), event->key()});
            modifiers.append(event->modifiers());
        }
        QList<std::pair<QEvent::Type, int>> keys;
        QList<Qt::KeyboardModifiers> modifiers;
    } delegate;
    VLRResponderView view;
    EXPECT_EQ(view.focusPolicy(), Qt::StrongFocus);
    view.setResponderDelegate(&delegate);

    const Qt::KeyboardModifiers held = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Meta, held);
    QCoreApplication::sendEvent(&view, &press);
    EXPECT_FALSE(press.isAccepted()); // on to the parent
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_Alt, Qt::ControlModifier | Qt::MetaModifier);
    QCoreApplication::sendEvent(&view, &release);
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a");
    QCoreApplication::sendEvent(&view, &letter);

    const QList<std::pair<QEvent::Type, int>> expected = {{QEvent::KeyPress, Qt::Key_Meta},
                                                          {QEvent::KeyRelease, Qt::Key_Alt}};
    EXPECT_EQ(delegate.keys, expected);
    ASSERT_EQ(delegate.modifiers.size(), 2);
    EXPECT_EQ(delegate.modifiers.at(0), press.modifiers());
    EXPECT_EQ(delegate.modifiers.at(1), release.modifiers());
}
