#pragma once

#include "service/VLRTransferQueue.h"

// A team server's session's transfer queue while transfers to the server are
// not part of this build: always empty, and refusing work with a clear text.
class RemoteTransferQueue final : public VLRTransferQueue
{
public:
    void restartTransfer(const VLRTransferReportingPtr& transfer, vlr::OptionalError* error) override;
    void moveTransfersAbove(const VLRTransferList& transfers,
                            const VLRTransferReportingPtr& referenceTransfer) override;
};
