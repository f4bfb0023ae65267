#pragma once

#include <QStringList>

class VLRDropTargetButton;

// Hears drags over a drop-target button and the files dropped on it.
class VLRDropTargetButtonDelegate
{
public:
    virtual ~VLRDropTargetButtonDelegate() = default;

    virtual void dropTargetButtonDidReceiveDragEvent(VLRDropTargetButton* button) = 0;
    virtual void dropTargetButtonDidReceiveFiles(VLRDropTargetButton* button, const QStringList& files) = 0;
};
