#pragma once

#include "service/VLRObject.h"
#include "service/VLRTypes.h"

// The upload or the download queue of a session. Every property is
// observable.
class VLRTransferQueue : public VLRObject
{
public:
    // The key paths of the observable properties.
    struct Key
    {
        static constexpr QLatin1StringView transfers{"transfers"};
        static constexpr QLatin1StringView currentTransfer{"currentTransfer"};
        static constexpr QLatin1StringView throughput{"throughput"};
        static constexpr QLatin1StringView timeRemaining{"timeRemaining"};
        static constexpr QLatin1StringView timeRemainingInvalid{"timeRemainingInvalid"};
    };

    const VLRTransferList& transfers() const { return m_transfers; }
    const VLRTransferReportingPtr& currentTransfer() const { return m_currentTransfer; }
    // Kilobits per second.
    double throughput() const { return m_throughput; }
    // Seconds; meaningless while timeRemainingInvalid is true.
    double timeRemaining() const { return m_timeRemaining; }
    bool timeRemainingInvalid() const { return m_timeRemainingInvalid; }

    // Puts a failed transfer back to work; a refusal comes back in error.
    virtual void restartTransfer(const VLRTransferReportingPtr& transfer, vlr::OptionalError* error) = 0;
    virtual void moveTransfersAbove(const VLRTransferList& transfers,
                                    const VLRTransferReportingPtr& referenceTransfer) = 0;

    QVariant valueForKey(const QString& key) const override;

protected:
    // Changed by the service library and the test double alone; their
    // subclasses publish these.
    void setTransfers(const VLRTransferList& value) { changeValue(m_transfers, value, Key::transfers); }
    void setCurrentTransfer(const VLRTransferReportingPtr& value)
    {
        changeValue(m_currentTransfer, value, Key::currentTransfer);
    }
    void setThroughput(double value) { changeValue(m_throughput, value, Key::throughput); }
    void setTimeRemaining(double value) { changeValue(m_timeRemaining, value, Key::timeRemaining); }
    void setTimeRemainingInvalid(bool value) { changeValue(m_timeRemainingInvalid, value, Key::timeRemainingInvalid); }

private:
    VLRTransferList m_transfers;
    VLRTransferReportingPtr m_currentTransfer;
    double m_throughput = 0;
    double m_timeRemaining = 0;
    bool m_timeRemainingInvalid = true;
};
