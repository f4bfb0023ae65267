#pragma once

#include <QStringList>

class StatusItemImageView;

// Hears what happens to the status item: a click, a drag coming in, files
// dropped.
class StatusItemImageViewDelegate
{
public:
    virtual ~StatusItemImageViewDelegate() = default;

    virtual void statusItemImageViewDidReceiveDragEvent(StatusItemImageView* view) = 0;
    virtual void statusItemImageViewDidReceiveMouseDownEvent(StatusItemImageView* view) = 0;
    virtual void statusItemImageViewDidReceiveFiles(StatusItemImageView* view, const QStringList& files) = 0;
};
