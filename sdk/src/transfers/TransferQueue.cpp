#include "sdk/transfers/TransferQueue.h"

#include "sdk/base/Clock.h"
#include "sdk/base/MainThread.h"
#include "sdk/base/ServiceError.h"
#include "sdk/transfers/Reaper.h"
#include "sdk/transfers/TransferQueueHost.h"
#include "sdk/transfers/TransfersLog.h"

#include <QFileInfo>

TransferQueue::TransferQueue(TransferRunner::Factory runnerFactory, TransferQueueHost& host)
    : m_host(host)
    , m_worker(std::make_unique<TransferWorker>(std::move(runnerFactory)))
{ }

TransferQueue::~TransferQueue()
{
    retireWorker();
}

void TransferQueue::retireWorker()
{
    if (!m_worker)
        return;
    m_worker->stopCurrent();
    Reaper::retire([worker = std::shared_ptr<TransferWorker>(std::move(m_worker))] { worker->shutdown(); });
}

std::shared_ptr<TransferQueue> TransferQueue::shared()
{
    return std::static_pointer_cast<TransferQueue>(shared_from_this());
}

QueuedTransferPtr TransferQueue::add(const TransferJob& job)
{
    auto transfer = std::make_shared<QueuedTransfer>(job, shared());
    transfer->job().position =
        transfers().isEmpty() ? 1 : std::static_pointer_cast<QueuedTransfer>(transfers().last())->job().position + 1;
    m_host.persistTransfer(transfer->job());
    VLRTransferList list = transfers();
    list.append(transfer);
    setTransfers(list);
    schedule();
    return transfer;
}

QueuedTransferPtr TransferQueue::find(const QueuedTransfer& transfer) const
{
    for (const VLRTransferReportingPtr& candidate : transfers())
        if (candidate.get() == &transfer)
            return std::static_pointer_cast<QueuedTransfer>(candidate);
    return nullptr;
}

void TransferQueue::schedule()
{
    if (m_suspended || m_running)
        return;
    QueuedTransferPtr next;
    if (!m_host.allTransfersPaused())
        for (const VLRTransferReportingPtr& candidate : transfers())
            if (!candidate->isPaused()) {
                next = std::static_pointer_cast<QueuedTransfer>(candidate);
                break;
            }
    if (!next) {
        if (currentTransfer())
            setCurrentTransfer(nullptr);
        clearSpeed();
        return;
    }
    m_running = next;
    m_stopIntent = StopIntent::None;
    setCurrentTransfer(next);
    const std::weak_ptr<TransferQueue> weakSelf = shared();
    const QString id = next->identifier();
    m_worker->start(
        next->job(),
        [weakSelf, id](const TransferWorker::Progress& progress) {
            MainThread::post([weakSelf, id, progress] {
                if (auto self = weakSelf.lock())
                    self->onProgress(id, progress);
            });
        },
        [weakSelf, id](const TransferJob& job) {
            MainThread::post([weakSelf, id, job] {
                if (auto self = weakSelf.lock())
                    self->onNoted(id, job);
            });
        },
        [weakSelf, id](const TransferResult& result) {
            MainThread::post([weakSelf, id, result] {
                if (auto self = weakSelf.lock())
                    self->onFinished(id, result);
            });
        });
}

void TransferQueue::onProgress(const QString& id, const TransferWorker::Progress& progress)
{
    if (!m_running || m_running->identifier() != id || m_suspended)
        return;
    if (progress.total != m_running->totalSize()) {
        m_running->setTotalSize(progress.total);
        m_running->job().totalSize = progress.total;
    }
    // 1 is kept for the end, when the transfer is really done.
    const double fraction = progress.total > 0 ? std::min(0.999, double(progress.done) / double(progress.total)) : 0;
    if (fraction != m_running->fractionCompleted())
        m_running->setFractionCompleted(fraction);
    const double kilobits = progress.bytesPerSecond * 8 / 1000;
    if (kilobits != throughput())
        setThroughput(kilobits);
    updateTimeRemaining(progress.bytesPerSecond, progress.done);
}

// Only what a resume needs is taken from the worker's copy of the job: the
// rest is the queue's (paused, position) and may have changed meanwhile.
void TransferQueue::onNoted(const QString& id, const TransferJob& job)
{
    if (!m_running || m_running->identifier() != id || m_suspended)
        return;
    m_running->job().uploadId = job.uploadId;
    m_host.persistTransfer(m_running->job());
}

void TransferQueue::updateTimeRemaining(double bytesPerSecond, qint64 doneOfCurrent)
{
    qint64 remaining = 0;
    for (const VLRTransferReportingPtr& transfer : transfers())
        if (!transfer->isPaused())
            remaining += transfer.get() == m_running.get() ? std::max<qint64>(0, transfer->totalSize() - doneOfCurrent)
                                                           : transfer->totalSize();
    if (bytesPerSecond <= 0) {
        if (!timeRemainingInvalid())
            setTimeRemainingInvalid(true);
        return;
    }
    const double seconds = double(remaining) / bytesPerSecond;
    if (seconds != timeRemaining())
        setTimeRemaining(seconds);
    if (timeRemainingInvalid())
        setTimeRemainingInvalid(false);
}

void TransferQueue::clearSpeed()
{
    if (throughput() != 0)
        setThroughput(0);
    if (!timeRemainingInvalid())
        setTimeRemainingInvalid(true);
}

void TransferQueue::onFinished(const QString& id, const TransferResult& result)
{
    if (!m_running || m_running->identifier() != id || m_suspended)
        return;
    const QueuedTransferPtr transfer = m_running;
    const StopIntent intent = m_stopIntent;
    m_running.reset();
    m_stopIntent = StopIntent::None;
    switch (result.outcome) {
    case TransferResult::Outcome::Completed:
        if (!result.filePath.isEmpty() && result.filePath != transfer->job().filePath) {
            transfer->job().filePath = result.filePath;
            transfer->setFileURL(QUrl::fromLocalFile(result.filePath));
        }
        if (!result.revisionId.isEmpty())
            transfer->job().revisionId = result.revisionId;
        if (result.totalSize > 0 && result.totalSize != transfer->totalSize()) {
            transfer->job().totalSize = result.totalSize;
            transfer->setTotalSize(result.totalSize);
        }
        finish(transfer, std::nullopt);
        break;
    case TransferResult::Outcome::Failed:
        finish(transfer, result.error);
        break;
    case TransferResult::Outcome::Stopped:
        if (intent == StopIntent::Cancel) {
            m_host.discardPartials(transfer->job());
            finish(transfer, ServiceError::cancelled());
        }
        break;
    }
    schedule();
}

// The end is told while the transfer is still the current one, so that its
// observers hear of it; only then does it leave the queue.
void TransferQueue::finish(const QueuedTransferPtr& transfer, const vlr::OptionalError& error)
{
    TransferJob& job = transfer->job();
    qCDebug(lcTransfers, "Transfer finished%s", error ? " with an error" : "");
    job.finished = true;
    job.error = error;
    job.finishedAt = Clock::nowMs();
    if (!error)
        transfer->setFractionCompleted(1.0);
    else
        transfer->setError(error);
    transfer->setFinished(true);
    m_host.persistTransfer(job);
    VLRTransferList list = transfers();
    list.removeOne(transfer);
    setTransfers(list);
    if (currentTransfer() == transfer)
        setCurrentTransfer(nullptr);
    m_host.transferCompleted(transfer);
}

void TransferQueue::interrupt()
{
    if (!m_running)
        return;
    m_stopIntent = StopIntent::Interrupt;
    m_worker->stopCurrent();
}

void TransferQueue::suspend()
{
    m_suspended = true;
    m_running.reset();
    retireWorker();
    if (currentTransfer())
        setCurrentTransfer(nullptr);
    clearSpeed();
}

void TransferQueue::pauseTransfer(QueuedTransfer& transfer)
{
    const QueuedTransferPtr queued = find(transfer);
    if (!queued || queued->isPaused())
        return;
    queued->job().paused = true;
    queued->setPaused(true);
    m_host.persistTransfer(queued->job());
    if (m_running == queued) {
        m_stopIntent = StopIntent::Pause;
        m_worker->stopCurrent();
    }
}

void TransferQueue::unpauseTransfer(QueuedTransfer& transfer)
{
    const QueuedTransferPtr queued = find(transfer);
    if (!queued || !queued->isPaused())
        return;
    queued->job().paused = false;
    queued->setPaused(false);
    m_host.persistTransfer(queued->job());
    schedule();
}

void TransferQueue::cancelTransfer(QueuedTransfer& transfer)
{
    const QueuedTransferPtr queued = find(transfer);
    if (!queued) {
        // A finished transfer leaves the completed list.
        auto finished = std::static_pointer_cast<QueuedTransfer>(transfer.shared_from_this());
        if (transfer.isFinished() && m_host.takeCompletedTransfer(finished)) {
            m_host.forgetTransfer(transfer.identifier());
            if (transfer.error())
                m_host.discardPartials(finished->job());
        }
        return;
    }
    if (m_running == queued) {
        m_stopIntent = StopIntent::Cancel;
        m_worker->stopCurrent();
        return;
    }
    m_host.discardPartials(queued->job());
    finish(queued, ServiceError::cancelled());
}

void TransferQueue::restartTransfer(const VLRTransferReportingPtr& transfer, vlr::OptionalError* error)
{
    auto local = std::dynamic_pointer_cast<QueuedTransfer>(transfer);
    auto refuse = [error](const vlr::Error& reason) {
        if (error)
            *error = reason;
    };
    if (error)
        error->reset();
    if (!local || !local->belongsTo(this) || !local->isFinished() || !local->error() || find(*local)) {
        refuse(ServiceError::make(ServiceError::NotRestartable));
        return;
    }
    TransferJob& job = local->job();
    if (job.type == TransferJob::Upload && !QFileInfo::exists(job.filePath)) {
        refuse(ServiceError::make(
            ServiceError::FileUnreadable,
            QStringLiteral("\"%1\": No such file or directory").arg(QFileInfo(job.filePath).fileName())));
        return;
    }
    if (!m_host.takeCompletedTransfer(local)) {
        refuse(ServiceError::make(ServiceError::NotRestartable));
        return;
    }
    job.finished = false;
    job.error.reset();
    job.finishedAt = 0;
    job.paused = false;
    job.position =
        transfers().isEmpty() ? 1 : std::static_pointer_cast<QueuedTransfer>(transfers().last())->job().position + 1;
    local->setError(std::nullopt);
    local->setFinished(false);
    local->setFractionCompleted(0);
    if (local->isPaused())
        local->setPaused(false);
    m_host.persistTransfer(job);
    VLRTransferList list = transfers();
    list.append(local);
    setTransfers(list);
    schedule();
}

void TransferQueue::moveTransfersAbove(const VLRTransferList& moved, const VLRTransferReportingPtr& referenceTransfer)
{
    VLRTransferList remaining;
    VLRTransferList taken;
    for (const VLRTransferReportingPtr& transfer : transfers())
        (moved.contains(transfer) && transfer != referenceTransfer ? taken : remaining).append(transfer);
    if (taken.isEmpty())
        return;
    // Keep the order in which the client listed them.
    std::stable_sort(taken.begin(), taken.end(),
                     [&](const auto& a, const auto& b) { return moved.indexOf(a) < moved.indexOf(b); });
    qsizetype at = remaining.indexOf(referenceTransfer);
    if (at < 0)
        at = remaining.size();
    for (qsizetype i = 0; i < taken.size(); ++i)
        remaining.insert(at + i, taken.at(i));
    setTransfers(remaining);
    renumber();
}

void TransferQueue::renumber()
{
    double position = 1;
    for (const VLRTransferReportingPtr& transfer : transfers()) {
        TransferJob& job = std::static_pointer_cast<QueuedTransfer>(transfer)->job();
        if (job.position != position) {
            job.position = position;
            m_host.persistTransfer(job);
        }
        position += 1;
    }
}
