#pragma once

#include "fakes/FakeCallLog.h"
#include "fakes/FakeObservationJournal.h"
#include "service/VLRTransferQueue.h"

class FakeTransferQueue : public Journaled<VLRTransferQueue>
{
public:
    using VLRTransferQueue::setCurrentTransfer;
    using VLRTransferQueue::setThroughput;
    using VLRTransferQueue::setTimeRemaining;
    using VLRTransferQueue::setTimeRemainingInvalid;
    using VLRTransferQueue::setTransfers;

    FakeCallLog log;
    // What restartTransfer answers in its error out-parameter.
    vlr::OptionalError restartError;
    VLRTransferList lastMoved;
    VLRTransferReportingPtr lastReference;

    void restartTransfer(const VLRTransferReportingPtr& transfer, vlr::OptionalError* error) override;
    void moveTransfersAbove(const VLRTransferList& transfers,
                            const VLRTransferReportingPtr& referenceTransfer) override;
};
