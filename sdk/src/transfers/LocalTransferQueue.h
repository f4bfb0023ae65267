#pragma once

#include "sdk/transfers/LocalTransfer.h"
#include "sdk/transfers/TransferResult.h"
#include "sdk/transfers/TransferWorker.h"

#include "service/VLRTransferQueue.h"

class TransferQueueHost;

// The upload or the download queue of a session. The first transfer that is
// neither paused nor failed runs on the queue's worker; every change that
// the client can observe is made here, on the GUI thread, from what the
// worker reports.
class LocalTransferQueue : public VLRTransferQueue
{
public:
    LocalTransferQueue(const QString& databaseFolder, TransferQueueHost& host);
    ~LocalTransferQueue() override;

    std::shared_ptr<LocalTransferQueue> shared();

    // Takes a new or a restored transfer at the end of the queue.
    LocalTransferPtr add(const TransferJob& job);
    // Starts the next transfer when nothing runs.
    void schedule();
    // Stops the running transfer where it is; it stays queued (pause all,
    // logout). suspend() also stops the worker for good.
    void interrupt();
    void suspend();

    void pauseTransfer(LocalTransfer& transfer);
    void unpauseTransfer(LocalTransfer& transfer);
    void cancelTransfer(LocalTransfer& transfer);

    void restartTransfer(const VLRTransferReportingPtr& transfer, vlr::OptionalError* error) override;
    void moveTransfersAbove(const VLRTransferList& transfers,
                            const VLRTransferReportingPtr& referenceTransfer) override;

private:
    enum class StopIntent { None, Interrupt, Pause, Cancel };

    LocalTransferPtr find(const LocalTransfer& transfer) const;
    void onProgress(const QString& id, const TransferWorker::Progress& progress);
    void onFinished(const QString& id, const TransferResult& result);
    void finish(const LocalTransferPtr& transfer, const vlr::OptionalError& error);
    void updateTimeRemaining(double bytesPerSecond, qint64 doneOfCurrent);
    void renumber();
    void clearSpeed();
    void retireWorker();

    QString m_databaseFolder;
    TransferQueueHost& m_host;
    std::unique_ptr<TransferWorker> m_worker;
    LocalTransferPtr m_running;
    StopIntent m_stopIntent = StopIntent::None;
    bool m_suspended = false;
};
