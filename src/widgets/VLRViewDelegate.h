#pragma once

#include <QStringList>

class VLRView;

// Hears the files dropped on a view that is a drop target.
class VLRViewDelegate
{
public:
    virtual ~VLRViewDelegate() = default;

    virtual void viewDidReceiveDroppedFiles(VLRView* view, const QStringList& files) = 0;

    // Each time a drag enters the view; most delegates need not hear it.
    virtual void viewDidReceiveDraggingEvent(VLRView*) { }
};
