#pragma once

#include "widgets/VLRGradient.h"
#include "widgets/VLRLayer.h"

#include <QList>
#include <QPointer>
#include <QWidget>

#include <optional>

class VLRViewDelegate;

// The plain view most panels stand on: a background of colour, picture or
// gradient, a border with a corner radius, a drop ring for file drags that
// reports to a delegate, views that take clicks ahead of this view's children,
// and mouse tracking on behalf of another object.
class VLRView : public QWidget
{
    Q_OBJECT

public:
    explicit VLRView(QWidget* parent = nullptr);

    // The ring is drawn now: a drag is over the view.
    bool showDropTarget() const { return m_showDropTarget; }

    bool isDropTarget() const { return m_dropTarget; }
    void setDropTarget(bool dropTarget);

    VLRViewDelegate* delegate() const { return m_delegate; }
    void setDelegate(VLRViewDelegate* delegate);

    QColor backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(const QColor& color);

    const std::optional<VLRGradient>& backgroundGradient() const { return m_backgroundGradient; }
    // Stored only; it shows at the next redraw.
    void setBackgroundGradient(const std::optional<VLRGradient>& gradient);

    QPixmap backgroundImage() const { return m_backgroundImage; }
    void setBackgroundImage(const QPixmap& image);

    // Setting any of the three applies all three to the layer; without a
    // colour the layer keeps the one it has.
    QColor borderColor() const { return m_borderColor; }
    void setBorderColor(const QColor& color);
    qreal borderWidth() const { return m_borderWidth; }
    void setBorderWidth(qreal width);
    qreal borderCornerRadius() const { return m_borderCornerRadius; }
    void setBorderCornerRadius(qreal radius);

    // Views, usually buttons under a transparent sibling, that a click in
    // their bounds reaches first.
    QList<QWidget*> clickThroughViews() const;
    void setClickThroughViews(const QList<QWidget*>& views);

    // From now on the owner hears this view's QEvent::Enter, QEvent::Leave
    // and QEvent::MouseMove, over the view's whole area whatever its size.
    // A QObject has one owner, its parent, so the view cannot keep the owner
    // alive; it watches it instead, and an owner that is gone hears nothing.
    QObject* trackingAreaOwner() const { return m_trackingAreaOwner; }
    void trackMouseWithOwner(QObject* owner);

    // The view that takes a click at the point, given in the coordinates of
    // this view's parent (its own for a window); nullptr for none. The
    // click-through views are tried first, in order, reading the point as if
    // it were in this view's own coordinates; the first whose bounds hold it
    // answers, asked with the point as this view got it, and its answer
    // stands, none included. Pages place their buttons so that both readings
    // agree. Otherwise the platform's answer.
    virtual QWidget* hitTest(const QPointF& point);

    // What is on the view's layer, or nullptr while it has none.
    const VLRLayer* layer() const { return m_layer ? &*m_layer : nullptr; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    VLRLayer& layerCreatingIfNeeded();
    void drawBorder();
    void drawDropRing(QPainter& painter);
    void draggingEnded();
    void watchForClicks(QObject* object);
    bool routeClick(QWidget* receiver, QMouseEvent* event);

    bool m_showDropTarget = false;
    bool m_dropTarget = false;
    VLRViewDelegate* m_delegate = nullptr;
    QColor m_backgroundColor;
    std::optional<VLRGradient> m_backgroundGradient;
    QPixmap m_backgroundImage;
    QColor m_borderColor;
    qreal m_borderWidth = 2;
    qreal m_borderCornerRadius = 3;
    QList<QPointer<QWidget>> m_clickThroughViews;
    QPointer<QObject> m_trackingAreaOwner;
    std::optional<VLRLayer> m_layer;

    bool m_watchingForClicks = false;
    bool m_routingClick = false;
    bool m_resendingClick = false;
    QPointer<QWidget> m_clickTarget;
};
