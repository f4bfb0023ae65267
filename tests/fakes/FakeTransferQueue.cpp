#include "fakes/FakeTransferQueue.h"

#include "service/VLRTransferReporting.h"

void FakeTransferQueue::restartTransfer(const VLRTransferReportingPtr& transfer, vlr::OptionalError* error)
{
    log.record(QStringLiteral("restartTransfer"), {transfer ? transfer->identifier() : QString()});
    if (error)
        *error = restartError;
}

void FakeTransferQueue::moveTransfersAbove(const VLRTransferList& transfers,
                                           const VLRTransferReportingPtr& referenceTransfer)
{
    log.record(QStringLiteral("moveTransfersAbove"), {transfers.size()});
    lastMoved = transfers;
    lastReference = referenceTransfer;
}
