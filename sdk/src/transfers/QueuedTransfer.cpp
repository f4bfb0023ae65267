#include "sdk/transfers/QueuedTransfer.h"

#include "sdk/transfers/TransferQueue.h"

#include <QFileInfo>

QueuedTransfer::QueuedTransfer(const TransferJob& job, const std::shared_ptr<TransferQueue>& queue)
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

void QueuedTransfer::pause()
{
    if (auto queue = m_queue.lock())
        queue->pauseTransfer(*this);
}

void QueuedTransfer::unpause()
{
    if (auto queue = m_queue.lock())
        queue->unpauseTransfer(*this);
}

void QueuedTransfer::cancel()
{
    if (auto queue = m_queue.lock())
        queue->cancelTransfer(*this);
}
