#pragma once

#include "sdk/transfers/TransferRunner.h"

#include <QString>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

// The thread that moves the bytes of one queue, one transfer at a time, by
// the runner it makes from the factory on that thread. It reports progress
// at most 20 times a second, and its end once; all callbacks run on the
// worker, and the queue hands them to the GUI thread.
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
    using NotedHandler = std::function<void(const TransferJob& job)>;

    explicit TransferWorker(TransferRunner::Factory runnerFactory);
    TransferWorker(const TransferWorker&) = delete;
    TransferWorker& operator=(const TransferWorker&) = delete;
    // Stops the running transfer where it is and waits for the thread.
    ~TransferWorker();

    void start(const TransferJob& job, ProgressHandler progress, NotedHandler noted, FinishedHandler finished);
    // The running transfer ends with the Stopped outcome at its next chunk.
    void stopCurrent();
    void shutdown();

private:
    void run();
    TransferResult perform(const TransferJob& job, const ProgressHandler& progress, const NotedHandler& noted);

    TransferRunner::Factory m_runnerFactory;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    struct Assignment
    {
        TransferJob job;
        ProgressHandler progress;
        NotedHandler noted;
        FinishedHandler finished;
    };
    std::optional<Assignment> m_next;
    bool m_shuttingDown = false;
    std::atomic_bool m_stopRequested{false};
    std::unique_ptr<TransferRunner> m_runner;
    std::thread m_thread;
};
