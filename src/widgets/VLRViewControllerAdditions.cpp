#include "widgets/VLRViewControllerAdditions.h"

#include "widgets/VLRViewAdditions.h"

#include <QWidget>

void addEdgeConstraintSuperviewSubview(VLRLayoutAttribute attribute, QWidget* superview, QWidget* subview)
{
    if (!superview || !subview)
        return;
    vlr_addConstraint(superview, VLRLayoutConstraint{subview, attribute, superview, attribute, 0});
}

void setParentView(QWidget* controllerView, QWidget* parentView)
{
    if (!controllerView || !parentView)
        return;
    vlr_setTranslatesAutoresizingMaskIntoConstraints(controllerView, false);
    controllerView->setParent(parentView);
    controllerView->show();
    for (VLRLayoutAttribute attribute :
         {VLRLayoutAttributeLeft, VLRLayoutAttributeRight, VLRLayoutAttributeTop, VLRLayoutAttributeBottom})
        addEdgeConstraintSuperviewSubview(attribute, parentView, controllerView);
}
