#pragma once

#include "service/VLRTypes.h"

#include <QString>

class QWidget;
class TransfersViewControllerDelegate;

// The transfers tab as its owner drives it: three lists kept from the
// session's arrays, their speeds and times, and the page state.
class TransfersPage
{
public:
    static constexpr int UploadsList = 1;
    static constexpr int DownloadsList = 2;
    static constexpr int CompletedList = 3;

    virtual ~TransfersPage() = default;
    virtual QWidget* view() = 0;
    virtual void setDelegate(TransfersViewControllerDelegate* delegate) = 0;

    virtual void setUploads(const VLRTransferList& uploads) = 0;
    virtual void setDownloads(const VLRTransferList& downloads) = 0;
    virtual void setCompleted(const VLRTransferList& completed) = 0;
    virtual void setTransfersPaused(bool paused) = 0;
    virtual void updateUploadThroughput(double kilobitsPerSecond) = 0;
    virtual void updateDownloadThroughput(double kilobitsPerSecond) = 0;
    virtual void updateUploadTimeRemaining(double seconds, bool isValid) = 0;
    virtual void updateDownloadTimeRemaining(double seconds, bool isValid) = 0;
    virtual void updateState() = 0;
    // Shows list 1, 2 or 3 and selects the transfer of that identifier in it,
    // if there is one.
    virtual void showTab(int list, const QString& andSelectTransfer) = 0;
};
