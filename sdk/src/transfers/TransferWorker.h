#pragma once

#include "sdk/transfers/TransferJob.h"
#include "sdk/transfers/TransferResult.h"

#include <QString>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

class Database;

// The thread that moves the bytes of one queue, one transfer at a time.
// It reports progress at most 20 times a second, and its end once; both
// callbacks run on the worker, and the queue hands them to the GUI thread.
class TransferWorker
{
public:
    static constexpr auto reportInterval = std::chrono::milliseconds(50);

    struct Progress
    {
        qint64 done = 0;
        qint64 total = 0;
        double bytesPerSecond = 0;
    };
    using ProgressHandler = std::function<void(const Progress& progress)>;
    using FinishedHandler = std::function<void(const TransferResult& result)>;

    explicit TransferWorker(const QString& databaseFolder);
    TransferWorker(const TransferWorker&) = delete;
    TransferWorker& operator=(const TransferWorker&) = delete;
    // Stops the running transfer where it is and waits for the thread.
    ~TransferWorker();

    void start(const TransferJob& job, ProgressHandler progress, FinishedHandler finished);
    // The running transfer ends with the Stopped outcome at its next chunk.
    void stopCurrent();
    void shutdown();

private:
    void run();
    TransferResult perform(const TransferJob& job, const ProgressHandler& progress);

    QString m_databaseFolder;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    struct Assignment
    {
        TransferJob job;
        ProgressHandler progress;
        FinishedHandler finished;
    };
    std::optional<Assignment> m_next;
    bool m_shuttingDown = false;
    std::atomic_bool m_stopRequested{false};
    std::unique_ptr<Database> m_database;
    std::thread m_thread;
};
