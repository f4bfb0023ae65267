#include "widgets/VLRLayoutConstraints.h"

#include "widgets/VLRViewAdditions.h"

#include <QEvent>

#include <optional>

namespace {

// The item's rectangle in the coordinates of the given view.
QRectF frameInView(const QWidget* item, const QWidget* view)
{
    if (item == view)
        return QRectF(QPointF(0, 0), QSizeF(item->size()));
    if (item->parentWidget() == view)
        return QRectF(item->geometry());
    return QRectF(view->mapFromGlobal(item->mapToGlobal(QPointF(0, 0))), QSizeF(item->size()));
}

std::optional<qreal> attributeValue(const QRectF& frame, VLRLayoutAttribute attribute)
{
    switch (attribute) {
    case VLRLayoutAttributeLeft:
    case VLRLayoutAttributeLeading:
        return frame.left();
    case VLRLayoutAttributeRight:
    case VLRLayoutAttributeTrailing:
        return frame.left() + frame.width();
    case VLRLayoutAttributeTop:
        return frame.top();
    case VLRLayoutAttributeBottom:
        return frame.top() + frame.height();
    case VLRLayoutAttributeWidth:
        return frame.width();
    case VLRLayoutAttributeHeight:
        return frame.height();
    case VLRLayoutAttributeCenterX:
        return frame.center().x();
    case VLRLayoutAttributeCenterY:
        return frame.center().y();
    case VLRLayoutAttributeNotAnAttribute:
        break;
    }
    return std::nullopt;
}

// What the constraints ask of one axis of one item: its two edges, its
// length and its centre, each if asked.
struct Axis
{
    std::optional<qreal> start;
    std::optional<qreal> end;
    std::optional<qreal> length;
    std::optional<qreal> center;

    // The origin and length that satisfy the axis, from the present ones.
    std::pair<qreal, qreal> resolve(qreal origin, qreal size) const
    {
        if (length)
            size = *length;
        if (start && end)
            return {*start, *end - *start};
        if (start)
            return {*start, size};
        if (end)
            return {*end - size, size};
        if (center)
            return {*center - size / 2, size};
        return {origin, size};
    }
};

} // namespace

VLRLayoutConstraints::VLRLayoutConstraints(QWidget* holder)
    : QObject(holder)
    , m_holder(holder)
{
    holder->installEventFilter(this);
}

VLRLayoutConstraints* VLRLayoutConstraints::constraintsOfView(const QWidget* view)
{
    if (!view)
        return nullptr;
    return view->findChild<VLRLayoutConstraints*>(QString(), Qt::FindDirectChildrenOnly);
}

VLRLayoutConstraints* VLRLayoutConstraints::ensureConstraintsOfView(QWidget* view)
{
    if (!view)
        return nullptr;
    if (VLRLayoutConstraints* constraints = constraintsOfView(view))
        return constraints;
    return new VLRLayoutConstraints(view);
}

void VLRLayoutConstraints::addConstraint(const VLRLayoutConstraint& constraint)
{
    m_constraints.append(constraint);
    layout();
}

void VLRLayoutConstraints::removeConstraintAt(qsizetype index)
{
    if (index < 0 || index >= m_constraints.size())
        return;
    m_constraints.removeAt(index);
    layout();
}

void VLRLayoutConstraints::removeConstraintsWithItem(const QWidget* view)
{
    m_constraints.removeIf([view](const VLRLayoutConstraint& constraint) {
        return constraint.firstItem == view || constraint.secondItem == view;
    });
    layout();
}

void VLRLayoutConstraints::removeAllConstraints()
{
    m_constraints.clear();
}

void VLRLayoutConstraints::layout()
{
    QList<QWidget*> items;
    for (const VLRLayoutConstraint& constraint : std::as_const(m_constraints)) {
        QWidget* item = constraint.firstItem;
        if (item && !items.contains(item) && !vlr_translatesAutoresizingMaskIntoConstraints(item))
            items.append(item);
    }
    for (QWidget* item : std::as_const(items)) {
        QWidget* space = item->parentWidget() ? item->parentWidget() : item;
        Axis horizontal;
        Axis vertical;
        for (const VLRLayoutConstraint& constraint : std::as_const(m_constraints)) {
            if (constraint.firstItem != item)
                continue;
            std::optional<qreal> value = constraint.constant;
            if (constraint.secondItem && constraint.secondAttribute != VLRLayoutAttributeNotAnAttribute) {
                value = attributeValue(frameInView(constraint.secondItem, space), constraint.secondAttribute);
                if (value)
                    *value += constraint.constant;
            } else if (constraint.secondItem) {
                continue; // a second item without an attribute ties nothing
            }
            switch (constraint.firstAttribute) {
            case VLRLayoutAttributeLeft:
            case VLRLayoutAttributeLeading:
                horizontal.start = value;
                break;
            case VLRLayoutAttributeRight:
            case VLRLayoutAttributeTrailing:
                horizontal.end = value;
                break;
            case VLRLayoutAttributeWidth:
                horizontal.length = value;
                break;
            case VLRLayoutAttributeCenterX:
                horizontal.center = value;
                break;
            case VLRLayoutAttributeTop:
                vertical.start = value;
                break;
            case VLRLayoutAttributeBottom:
                vertical.end = value;
                break;
            case VLRLayoutAttributeHeight:
                vertical.length = value;
                break;
            case VLRLayoutAttributeCenterY:
                vertical.center = value;
                break;
            case VLRLayoutAttributeNotAnAttribute:
                break;
            }
        }
        const QRect present = item->geometry();
        const auto [x, width] = horizontal.resolve(present.x(), present.width());
        const auto [y, height] = vertical.resolve(present.y(), present.height());
        item->setGeometry(QRectF(x, y, width, height).toRect());
    }
}

bool VLRLayoutConstraints::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_holder && (event->type() == QEvent::Resize || event->type() == QEvent::Show))
        layout();
    return QObject::eventFilter(watched, event);
}
