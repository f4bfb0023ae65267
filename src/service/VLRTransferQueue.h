#pragma once

#include "service/VLRObject.h"
#include "service/VLRTypes.h"

// The upload or the download queue of a session. Every property is
// observable.
class VLRTransferQueue : public VLRObject
{
public:
    const VLRTransferList& transfers() const { return m_transfers; }
    const VLRTransferReportingPtr& currentTransfer() const { return m_currentTransfer; }
    // Kilobits per second.
    double throughput() const { return m_throughput; }
    // Seconds; meaningless while timeRemainingInvalid is true.
    double timeRemaining() const { return m_timeRemaining; }
    bool timeRemainingInvalid() const { return m_timeRemainingInvalid; }

    void setTransfers(const VLRTransferList& value) { changeValue(m_transfers, value, "transfers"); }
    void setCurrentTransfer(const VLRTransferReportingPtr& value) { changeValue(m_currentTransfer, value, "currentTransfer"); }
    void setThroughput(double value) { changeValue(m_throughput, value, "throughput"); }
    void setTimeRemaining(double value) { changeValue(m_timeRemaining, value, "timeRemaining"); }
    void setTimeRemainingInvalid(bool value) { changeValue(m_timeRemainingInvalid, value, "timeRemainingInvalid"); }

    // Puts a failed transfer back to work; a refusal comes back in error.
    virtual void restartTransfer(const VLRTransferReportingPtr& transfer, vlr::OptionalError* error) = 0;
    virtual void moveTransfersAbove(const VLRTransferList& transfers, const VLRTransferReportingPtr& referenceTransfer) = 0;

    QVariant valueForKey(const QString& key) const override;

private:
    VLRTransferList m_transfers;
    VLRTransferReportingPtr m_currentTransfer;
    double m_throughput = 0;
    double m_timeRemaining = 0;
    bool m_timeRemainingInvalid = true;
};
