#pragma once

#include "widgets/VLRButton.h"

class VLRDropTargetButtonDelegate;

// A button that takes file drags, as the popover's tab buttons do.
class VLRDropTargetButton : public VLRButton
{
    Q_OBJECT

public:
    explicit VLRDropTargetButton(QWidget* parent = nullptr);
    explicit VLRDropTargetButton(const QRect& frame, QWidget* parent = nullptr);

    VLRDropTargetButtonDelegate* delegate() const { return m_delegate; }
    void setDelegate(VLRDropTargetButtonDelegate* delegate) { m_delegate = delegate; }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    VLRDropTargetButtonDelegate* m_delegate = nullptr;
};
