#pragma once

class QKeyEvent;
class VLRResponderView;

// Hears every change of the modifier keys while the view has the focus.
class VLRResponderViewDelegate
{
public:
    virtual ~VLRResponderViewDelegate() = default;

    virtual void responderViewFlagsChanged(VLRResponderView* view, QKeyEvent* event) = 0;
};
