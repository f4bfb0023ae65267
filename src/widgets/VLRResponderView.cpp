#include "widgets/VLRResponderView.h"

#include "widgets/VLRResponderViewDelegate.h"

#include <QKeyEvent>

namespace {

bool isModifierKey(int key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
        return true;
    default:
        return false;
    }
}

} // namespace

VLRResponderView::VLRResponderView(QWidget* parent)
    : VLRView(parent)
{
    setFocusPolicy(Qt::StrongFocus);
}

bool VLRResponderView::flagsChanged(QKeyEvent* event)
{
    if (!isModifierKey(event->key()))
        return false;
    if (m_responderDelegate)
        m_responderDelegate->responderViewFlagsChanged(this, event);
    // The parent hears the change as well.
    event->ignore();
    return true;
}

void VLRResponderView::keyPressEvent(QKeyEvent* event)
{
    if (!flagsChanged(event))
        VLRView::keyPressEvent(event);
}

void VLRResponderView::keyReleaseEvent(QKeyEvent* event)
{
    if (!flagsChanged(event))
        VLRView::keyReleaseEvent(event);
}
