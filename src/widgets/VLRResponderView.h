#pragma once

#include "widgets/VLRView.h"

class VLRResponderViewDelegate;

// A view that takes the keyboard focus and reports each press or release of
// a modifier key to its delegate, then lets the key go on to its parent.
class VLRResponderView : public VLRView
{
    Q_OBJECT

public:
    explicit VLRResponderView(QWidget* parent = nullptr);

    VLRResponderViewDelegate* responderDelegate() const { return m_responderDelegate; }
    void setResponderDelegate(VLRResponderViewDelegate* delegate) { m_responderDelegate = delegate; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    // True when the event was a modifier key and went to the delegate.
    bool flagsChanged(QKeyEvent* event);

    VLRResponderViewDelegate* m_responderDelegate = nullptr;
};
