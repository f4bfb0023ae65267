#pragma once

#include <QPointer>
#include <QWidget>

// The attributes of a view that a constraint can tie, numbered as the
// program's layouts number them.
enum VLRLayoutAttribute : qint64 {
    VLRLayoutAttributeNotAnAttribute = 0,
    VLRLayoutAttributeLeft = 1,
    VLRLayoutAttributeRight = 2,
    VLRLayoutAttributeTop = 3,
    VLRLayoutAttributeBottom = 4,
    VLRLayoutAttributeLeading = 5,
    VLRLayoutAttributeTrailing = 6,
    VLRLayoutAttributeWidth = 7,
    VLRLayoutAttributeHeight = 8,
    VLRLayoutAttributeCenterX = 9,
    VLRLayoutAttributeCenterY = 10,
};

// firstItem.firstAttribute = secondItem.secondAttribute + constant; without
// a second item, firstItem.firstAttribute = constant. Edges are in the
// coordinates of the first item's parent, y growing downwards.
struct VLRLayoutConstraint
{
    QPointer<QWidget> firstItem;
    VLRLayoutAttribute firstAttribute = VLRLayoutAttributeNotAnAttribute;
    QPointer<QWidget> secondItem;
    VLRLayoutAttribute secondAttribute = VLRLayoutAttributeNotAnAttribute;
    qreal constant = 0;
};
