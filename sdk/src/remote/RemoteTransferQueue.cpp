#include "sdk/remote/RemoteTransferQueue.h"

#include "sdk/remote/RemoteError.h"

void RemoteTransferQueue::restartTransfer(const VLRTransferReportingPtr&, vlr::OptionalError* error)
{
    if (error)
        *error = RemoteError::make(RemoteError::NotAvailable, QStringLiteral("Transferring files"));
}

void RemoteTransferQueue::moveTransfersAbove(const VLRTransferList&, const VLRTransferReportingPtr&)
{ }
