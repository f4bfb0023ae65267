#pragma once

#include "service/VLRTypes.h"

class TransfersPage;

// What the transfers tab asks of its owner.
class TransfersViewControllerDelegate
{
public:
    virtual ~TransfersViewControllerDelegate() = default;
    virtual void transfersViewControllerDidClearCompleted(TransfersPage* controller) = 0;
    virtual void transfersViewControllerDidPauseTransfers(TransfersPage* controller, bool pause) = 0;
    virtual void transfersViewControllerRestartedUpload(TransfersPage* controller,
                                                        const VLRTransferReportingPtr& transfer) = 0;
    virtual void transfersViewControllerRestartedDownload(TransfersPage* controller,
                                                          const VLRTransferReportingPtr& transfer) = 0;
    virtual bool transfersViewControllerEmailNeedsConfirmation() = 0;
    virtual bool transfersViewControllerLoading() = 0;
    virtual void transfersViewControllerMovedUploads(TransfersPage* controller, const VLRTransferList& movedUploads,
                                                     const VLRTransferReportingPtr& aboveReferenceUpload) = 0;
    virtual void transfersViewControllerMovedDownloads(TransfersPage* controller, const VLRTransferList& movedDownloads,
                                                       const VLRTransferReportingPtr& aboveReferenceDownload) = 0;
};
