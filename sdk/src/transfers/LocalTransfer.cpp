#include "sdk/transfers/LocalTransfer.h"

#include "sdk/transfers/LocalTransferQueue.h"

#include <QFileInfo>

LocalTransfer::LocalTransfer(const TransferJob& job, const std::shared_ptr<LocalTransferQueue>& queue)
    : m_job(job)
    , m_queue(queue)
{
    setIdentifier(job.id);
    setType(job.type);
    setSubType(job.subType);
    setFileURL(QUrl::fromLocalFile(job.filePath));
    setTotalSize(job.totalSize);
    setPaused(job.paused);
    setError(job.error);
    setFinished(job.finished);
    setFractionCompleted(job.finished && !job.error ? 1.0 : 0.0);
}

void LocalTransfer::pause()
{
    if (auto queue = m_queue.lock())
        queue->pauseTransfer(*this);
}

void LocalTransfer::unpause()
{
    if (auto queue = m_queue.lock())
        queue->unpauseTransfer(*this);
}

void LocalTransfer::cancel()
{
    if (auto queue = m_queue.lock())
        queue->cancelTransfer(*this);
}
