#pragma once

#include "widgets/VLRLayoutConstraint.h"

#include <QList>
#include <QPointF>

class QGraphicsOpacityEffect;
class QWidget;

// What the kit adds to every view: hit testing as its views answer it, and
// constraints held by a view and applied to its descendants' geometry.

// The view that takes a click at the point, in the coordinates of the view's
// parent (its own for a window); nullptr for none. A VLRView answers by its
// own rule, any other view as the platform does.
QWidget* vlr_hitTest(QWidget* view, const QPointF& point);

// The platform's answer: nothing if the view is hidden, ignores the mouse or
// does not hold the point; else the answer of the topmost child that has one;
// else the view itself.
QWidget* vlr_platformHitTest(QWidget* view, const QPointF& point);

// A view whose mask is translated takes its geometry from its frame alone,
// and constraints that tie it as first item leave it where it is. Every view
// starts translated.
bool vlr_translatesAutoresizingMaskIntoConstraints(const QWidget* view);
void vlr_setTranslatesAutoresizingMaskIntoConstraints(QWidget* view, bool translates);

// The constraints the view itself holds, in order.
QList<VLRLayoutConstraint> vlr_constraints(const QWidget* view);
void vlr_addConstraint(QWidget* view, const VLRLayoutConstraint& constraint);

// Removes the first of the view's own constraints whose first item and first
// attribute are the given ones and, where given, whose second item and second
// attribute (not 0) are too. True if one went; only one goes.
bool vlr_removeConstraintWithFirstItemFirstAttributeSecondItemSecondAttribute(QWidget* view, const QWidget* firstItem,
                                                                              VLRLayoutAttribute firstAttribute,
                                                                              const QWidget* secondItem,
                                                                              VLRLayoutAttribute secondAttribute);

// Removes every constraint that ties the view from each of its ancestors,
// then the view's own, and turns the translation of its mask back on.
void vlr_removeAllConstraints(QWidget* view);

// The view's opacity, as an effect that can be set and animated; made at the
// first call, fully opaque.
QGraphicsOpacityEffect* vlr_opacityEffect(QWidget* view);
