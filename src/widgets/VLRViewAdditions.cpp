#include "widgets/VLRViewAdditions.h"

#include "widgets/VLRLayoutConstraints.h"
#include "widgets/VLRView.h"

#include <QGraphicsOpacityEffect>
#include <QVariant>

namespace {

const char* const kTranslatesAutoresizingMaskProperty = "vlr_translatesAutoresizingMaskIntoConstraints";

} // namespace

QWidget* vlr_hitTest(QWidget* view, const QPointF& point)
{
    if (!view)
        return nullptr;
    if (auto* kitView = qobject_cast<VLRView*>(view))
        return kitView->hitTest(point);
    return vlr_platformHitTest(view, point);
}

QWidget* vlr_platformHitTest(QWidget* view, const QPointF& point)
{
    if (!view || view->testAttribute(Qt::WA_TransparentForMouseEvents))
        return nullptr;
    // A child counts as shown when it would be with its parent, so that a
    // page can be hit-tested before its window is on screen.
    if (!view->isWindow() && !view->isVisibleTo(view->parentWidget()))
        return nullptr;
    const QRectF frame = view->isWindow() ? QRectF(view->rect()) : QRectF(view->geometry());
    if (!frame.contains(point))
        return nullptr;
    const QPointF local = point - frame.topLeft();
    const QObjectList children = view->children();
    for (auto child = children.crbegin(); child != children.crend(); ++child) {
        auto* widget = qobject_cast<QWidget*>(*child);
        if (!widget || widget->isWindow())
            continue;
        if (QWidget* hit = vlr_hitTest(widget, local))
            return hit;
    }
    return view;
}

bool vlr_translatesAutoresizingMaskIntoConstraints(const QWidget* view)
{
    if (!view)
        return false;
    const QVariant value = view->property(kTranslatesAutoresizingMaskProperty);
    return !value.isValid() || value.toBool();
}

void vlr_setTranslatesAutoresizingMaskIntoConstraints(QWidget* view, bool translates)
{
    if (view)
        view->setProperty(kTranslatesAutoresizingMaskProperty, translates);
}

QList<VLRLayoutConstraint> vlr_constraints(const QWidget* view)
{
    const VLRLayoutConstraints* constraints = VLRLayoutConstraints::constraintsOfView(view);
    return constraints ? constraints->constraints() : QList<VLRLayoutConstraint>();
}

void vlr_addConstraint(QWidget* view, const VLRLayoutConstraint& constraint)
{
    if (VLRLayoutConstraints* constraints = VLRLayoutConstraints::ensureConstraintsOfView(view))
        constraints->addConstraint(constraint);
}

bool vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(QWidget* view, const QWidget* firstItem,
                                                                              VLRLayoutAttribute firstAttribute,
                                                                              const QWidget* secondItem,
                                                                              VLRLayoutAttribute secondAttribute)
{
    VLRLayoutConstraints* constraints = VLRLayoutConstraints::constraintsOfView(view);
    if (!constraints)
        return false;
    const QList<VLRLayoutConstraint>& list = constraints->constraints();
    for (qsizetype index = 0; index < list.size(); ++index) {
        const VLRLayoutConstraint& constraint = list.at(index);
        if (constraint.firstItem != firstItem || constraint.firstAttribute != firstAttribute)
            continue;
        if (secondItem && constraint.secondItem != secondItem)
            continue;
        if (secondAttribute != VLRLayoutAttributeNotAnAttribute && constraint.secondAttribute != secondAttribute)
            continue;
        constraints->removeConstraintAt(index);
        return true;
    }
    return false;
}

void vlr_removeAllConstraints(QWidget* view)
{
    if (!view)
        return;
    for (QWidget* ancestor = view->parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
        if (VLRLayoutConstraints* constraints = VLRLayoutConstraints::constraintsOfView(ancestor))
            constraints->removeConstraintsWithItem(view);
    }
    if (VLRLayoutConstraints* constraints = VLRLayoutConstraints::constraintsOfView(view))
        constraints->removeAllConstraints();
    vlr_setTranslatesAutoresizingMaskIntoConstraints(view, true);
}

QGraphicsOpacityEffect* vlr_opacityEffect(QWidget* view)
{
    if (auto* effect = qobject_cast<QGraphicsOpacityEffect*>(view->graphicsEffect()))
        return effect;
    auto* effect = new QGraphicsOpacityEffect(view);
    effect->setOpacity(1.0);
    view->setGraphicsEffect(effect);
    return effect;
}
