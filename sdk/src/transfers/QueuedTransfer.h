#pragma once

#include "sdk/transfers/TransferJob.h"

#include "service/VLRTransferReporting.h"

#include <memory>

class TransferQueue;

// One transfer as the client sees it. Its controls go to its queue, which
// changes the record, always on the GUI thread.
class QueuedTransfer : public VLRTransferReporting
{
public:
    QueuedTransfer(const TransferJob& job, const std::shared_ptr<TransferQueue>& queue);

    TransferJob& job() { return m_job; }
    bool belongsTo(const TransferQueue* queue) const { return m_queue.lock().get() == queue; }
    const TransferJob& job() const { return m_job; }

    // Its queue changes it.
    using VLRTransferReporting::setError;
    using VLRTransferReporting::setFileURL;
    using VLRTransferReporting::setFinished;
    using VLRTransferReporting::setFractionCompleted;
    using VLRTransferReporting::setPaused;
    using VLRTransferReporting::setTotalSize;

    void pause() override;
    void unpause() override;
    void cancel() override;

private:
    TransferJob m_job;
    std::weak_ptr<TransferQueue> m_queue;
};

using QueuedTransferPtr = std::shared_ptr<QueuedTransfer>;
