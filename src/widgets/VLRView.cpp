#include "widgets/VLRView.h"

#include "widgets/VLRMimeDataAdditions.h"
#include "widgets/VLRViewAdditions.h"
#include "widgets/VLRViewDelegate.h"

#include <QChildEvent>
#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

VLRView::VLRView(QWidget* parent)
    : QWidget(parent)
{
    // Every view takes file drags; whether it wants them is decided when one
    // enters.
    setAcceptDrops(true);
}

void VLRView::setDropTarget(bool dropTarget)
{
    m_dropTarget = dropTarget;
}

void VLRView::setDelegate(VLRViewDelegate* delegate)
{
    m_delegate = delegate;
}

VLRLayer& VLRView::layerCreatingIfNeeded()
{
    if (!m_layer)
        m_layer.emplace();
    update();
    return *m_layer;
}

void VLRView::setBackgroundColor(const QColor& color)
{
    m_backgroundColor = color;
    layerCreatingIfNeeded().backgroundColor = color;
}

void VLRView::setBackgroundGradient(const std::optional<VLRGradient>& gradient)
{
    m_backgroundGradient = gradient;
}

void VLRView::setBackgroundImage(const QPixmap& image)
{
    m_backgroundImage = image;
    layerCreatingIfNeeded().contents = image;
}

void VLRView::setBorderColor(const QColor& color)
{
    m_borderColor = color;
    drawBorder();
}

void VLRView::setBorderWidth(qreal width)
{
    m_borderWidth = width;
    drawBorder();
}

void VLRView::setBorderCornerRadius(qreal radius)
{
    m_borderCornerRadius = radius;
    drawBorder();
}

void VLRView::drawBorder()
{
    VLRLayer& layer = layerCreatingIfNeeded();
    if (m_borderColor.isValid())
        layer.borderColor = m_borderColor;
    layer.borderWidth = m_borderWidth;
    layer.cornerRadius = m_borderCornerRadius;
}

QList<QWidget*> VLRView::clickThroughViews() const
{
    QList<QWidget*> views;
    for (const QPointer<QWidget>& view : m_clickThroughViews) {
        if (view)
            views.append(view);
    }
    return views;
}

void VLRView::setClickThroughViews(const QList<QWidget*>& views)
{
    m_clickThroughViews.clear();
    for (QWidget* view : views)
        m_clickThroughViews.append(view);
    if (!views.isEmpty() && !m_watchingForClicks) {
        m_watchingForClicks = true;
        watchForClicks(this);
    }
}

void VLRView::trackMouseWithOwner(QObject* owner)
{
    m_trackingAreaOwner = owner;
    if (owner)
        setMouseTracking(true);
}

QWidget* VLRView::hitTest(const QPointF& point)
{
    for (const QPointer<QWidget>& candidate : std::as_const(m_clickThroughViews)) {
        if (!candidate)
            continue;
        // The point is taken to be in this view's coordinates here, and the
        // candidate is asked with it unconverted: pages rely on exactly this.
        const QPointF inCandidate = candidate->mapFromGlobal(mapToGlobal(point));
        if (QRectF(candidate->rect()).contains(inCandidate))
            return vlr_hitTest(candidate, point);
    }
    return vlr_platformHitTest(this, point);
}

void VLRView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    if (m_layer)
        m_layer->paintBackground(painter, rect());
    if (m_backgroundGradient) {
        // The dirty rectangle, not the bounds, is the gradient's extent.
        const QRectF dirty(event->rect());
        painter.fillRect(dirty, m_backgroundGradient->linearGradientInRect(dirty));
    }
    if (m_dropTarget && m_showDropTarget)
        drawDropRing(painter);
    if (m_layer)
        m_layer->paintBorder(painter, rect());
}

void VLRView::drawDropRing(QPainter& painter)
{
    // The frame, not the bounds, moved by 4 and 3: the ring sits a point off
    // centre, and that is how it has always looked.
    const QRectF frame = isWindow() ? QRectF(rect()) : QRectF(geometry());
    const QRectF ring(frame.x() + 4, frame.y() + 3, frame.width() - 8, frame.height() - 8);
    QPainterPath path;
    path.addRoundedRect(ring, 8, 8);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(path, QPen(QColor(0, 0, 255), 2));
    painter.fillPath(path, QColor::fromRgbF(0, 0, 1, 0.1f));
    painter.restore();
}

void VLRView::dragEnterEvent(QDragEnterEvent* event)
{
    if (!m_dropTarget) {
        event->ignore();
        return;
    }
    if (m_delegate)
        m_delegate->viewDidReceiveDraggingEvent(this);
    if (!m_showDropTarget)
        update();
    m_showDropTarget = true;
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void VLRView::dragMoveEvent(QDragMoveEvent* event)
{
    if (!m_dropTarget) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void VLRView::dragLeaveEvent(QDragLeaveEvent*)
{
    draggingEnded();
}

void VLRView::dropEvent(QDropEvent* event)
{
    const QStringList files = vlr_filenames(event->mimeData());
    if (!files.isEmpty() && m_delegate)
        m_delegate->viewDidReceiveDroppedFiles(this, files);
    // A drop is always taken, also one that had nothing to deliver.
    event->setDropAction(Qt::CopyAction);
    event->accept();
    draggingEnded();
}

void VLRView::draggingEnded()
{
    if (!m_dropTarget)
        return;
    if (m_showDropTarget)
        update();
    m_showDropTarget = false;
}

void VLRView::enterEvent(QEnterEvent* event)
{
    if (m_trackingAreaOwner)
        QCoreApplication::sendEvent(m_trackingAreaOwner, event);
    QWidget::enterEvent(event);
}

void VLRView::leaveEvent(QEvent* event)
{
    if (m_trackingAreaOwner)
        QCoreApplication::sendEvent(m_trackingAreaOwner, event);
    QWidget::leaveEvent(event);
}

void VLRView::mouseMoveEvent(QMouseEvent* event)
{
    if (m_trackingAreaOwner)
        QCoreApplication::sendEvent(m_trackingAreaOwner, event);
    QWidget::mouseMoveEvent(event);
}

void VLRView::watchForClicks(QObject* object)
{
    if (!object->isWidgetType())
        return;
    object->installEventFilter(this);
    const QObjectList children = object->children();
    for (QObject* child : children)
        watchForClicks(child);
}

bool VLRView::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::ChildAdded:
        watchForClicks(static_cast<QChildEvent*>(event)->child());
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        if (watched->isWidgetType())
            return routeClick(static_cast<QWidget*>(watched), static_cast<QMouseEvent*>(event));
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

// Qt hands a click to the topmost child under the pointer; this sends it to
// the view that hitTest() names instead, and keeps the rest of that click
// (moves with the button held, the release) going to the same view. Events
// that Qt passes on to parents, and those this view sends itself, go by.
bool VLRView::routeClick(QWidget* receiver, QMouseEvent* event)
{
    if (m_resendingClick)
        return false;
    const bool press = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (press) {
        // Only where Qt delivered the press: a parent hears it again when the
        // child leaves it, and then a child lies under the point.
        if (m_clickThroughViews.isEmpty() || receiver->childAt(event->position().toPoint()))
            return false;
        const QPointF local = receiver->mapTo(this, event->position());
        QWidget* target = hitTest(isWindow() ? local : mapToParent(local));
        if (target == receiver) {
            m_routingClick = false;
            return false;
        }
        m_routingClick = true;
        m_clickTarget = target;
    } else if (!m_routingClick || receiver == m_clickTarget) {
        return false;
    }
    QPointer<QWidget> target = m_clickTarget;
    if (event->type() == QEvent::MouseButtonRelease && event->buttons() == Qt::NoButton)
        m_routingClick = false;
    if (target) {
        const QPointF position = target->mapFromGlobal(receiver->mapToGlobal(event->position()));
        const QPointF scenePosition = target->mapTo(target->window(), position);
        QMouseEvent routed(event->type(), position, scenePosition, event->globalPosition(), event->button(),
                           event->buttons(), event->modifiers(), event->pointingDevice());
        m_resendingClick = true;
        QCoreApplication::sendEvent(target, &routed);
        m_resendingClick = false;
    }
    return true;
}
