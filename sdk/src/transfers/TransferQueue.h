#pragma once

#include "sdk/transfers/QueuedTransfer.h"
#include "sdk/transfers/TransferResult.h"
#include "sdk/transfers/TransferWorker.h"

#include "service/VLRTransferQueue.h"

class TransferQueueHost;

// The upload or the download queue of a session. The first transfer that is
// neither paused nor failed runs on the queue's worker, by the runner that
// the factory makes there (the local content store or a team server);
// every change that the client can observe is made here, on the GUI
// thread, from what the worker reports.
class TransferQueue : public VLRTransferQueue
{
public:
    TransferQueue(TransferRunner::Factory runnerFactory, TransferQueueHost& host);
    ~TransferQueue() override;

    std::shared_ptr<TransferQueue> shared();

    // Takes a new or a restored transfer at the end of the queue.
    QueuedTransferPtr add(const TransferJob& job);
    // Starts the next transfer when nothing runs.
    void schedule();
    // Stops the running transfer where it is; it stays queued (pause all,
    // logout). suspend() also stops the worker for good.
    void interrupt();
    void suspend();

    void pauseTransfer(QueuedTransfer& transfer);
    void unpauseTransfer(QueuedTransfer& transfer);
    void cancelTransfer(QueuedTransfer& transfer);

    void restartTransfer(const VLRTransferReportingPtr& transfer, vlr::OptionalError* error) override;
    void moveTransfersAbove(const VLRTransferList& transfers,
                            const VLRTransferReportingPtr& referenceTransfer) override;

private:
    enum class StopIntent { None, Interrupt, Pause, Cancel };

    QueuedTransferPtr find(const QueuedTransfer& transfer) const;
    void onProgress(const QString& id, const TransferWorker::Progress& progress);
    void onNoted(const QString& id, const TransferJob& job);
    void onFinished(const QString& id, const TransferResult& result);
    void finish(const QueuedTransferPtr& transfer, const vlr::OptionalError& error);
    void updateTimeRemaining(double bytesPerSecond, qint64 doneOfCurrent);
    void renumber();
    void clearSpeed();
    void retireWorker();

    TransferQueueHost& m_host;
    std::unique_ptr<TransferWorker> m_worker;
    QueuedTransferPtr m_running;
    StopIntent m_stopIntent = StopIntent::None;
    bool m_suspended = false;
};
