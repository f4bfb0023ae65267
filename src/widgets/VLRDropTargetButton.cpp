#include "widgets/VLRDropTargetButton.h"

#include "widgets/VLRDropTargetButtonDelegate.h"
#include "widgets/VLRMimeDataAdditions.h"

#include <QDragEnterEvent>
#include <QDropEvent>

VLRDropTargetButton::VLRDropTargetButton(QWidget* parent)
    : VLRButton(parent)
{
    setAcceptDrops(true);
}

VLRDropTargetButton::VLRDropTargetButton(const QRect& frame, QWidget* parent)
    : VLRButton(frame, parent)
{
    setAcceptDrops(true);
}

void VLRDropTargetButton::dragEnterEvent(QDragEnterEvent* event)
{
    if (m_delegate)
        m_delegate->dropTargetButtonDidReceiveDragEvent(this);
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void VLRDropTargetButton::dragMoveEvent(QDragMoveEvent* event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void VLRDropTargetButton::dropEvent(QDropEvent* event)
{
    const QStringList files = vlr_filenames(event->mimeData());
    if (!files.isEmpty() && m_delegate)
        m_delegate->dropTargetButtonDidReceiveFiles(this, files);
    event->setDropAction(Qt::CopyAction);
    event->accept();
}
