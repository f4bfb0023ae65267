#pragma once

#include "widgets/VLRLayoutConstraint.h"

class QWidget;

// How a controller's view goes into the view that hosts it.

// The superview holds one constraint more: the subview's attribute equals the
// superview's same attribute.
void addEdgeConstraintSuperviewSubview(VLRLayoutAttribute attribute, QWidget* superview, QWidget* subview);

// The controller's view becomes a child of the host and fills it exactly,
// pinned left, right, top and bottom, in that order.
void setParentView(QWidget* controllerView, QWidget* parentView);
