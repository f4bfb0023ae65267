#include "sdk/transfers/TransferWorker.h"

#include "sdk/transfers/ThroughputMeter.h"

#include <algorithm>

TransferWorker::TransferWorker(TransferRunner::Factory runnerFactory)
    : m_runnerFactory(std::move(runnerFactory))
    , m_thread([this] { run(); })
{ }

TransferWorker::~TransferWorker()
{
    shutdown();
}

void TransferWorker::start(const TransferJob& job, ProgressHandler progress, NotedHandler noted,
                           FinishedHandler finished)
{
    {
        std::lock_guard lock(m_mutex);
        m_stopRequested = false;
        m_next = Assignment{job, std::move(progress), std::move(noted), std::move(finished)};
    }
    m_wake.notify_one();
}

void TransferWorker::stopCurrent()
{
    m_stopRequested = true;
}

void TransferWorker::shutdown()
{
    {
        std::lock_guard lock(m_mutex);
        m_shuttingDown = true;
        m_next.reset();
    }
    m_stopRequested = true;
    m_wake.notify_one();
    if (m_thread.joinable())
        m_thread.join();
}

void TransferWorker::run()
{
    m_runner = m_runnerFactory();
    for (;;) {
        Assignment assignment;
        {
            std::unique_lock lock(m_mutex);
            m_wake.wait(lock, [this] { return m_shuttingDown || m_next.has_value(); });
            if (m_shuttingDown)
                break;
            assignment = std::move(*m_next);
            m_next.reset();
        }
        assignment.finished(perform(assignment.job, assignment.progress, assignment.noted));
    }
    m_runner.reset();
}

TransferResult TransferWorker::perform(const TransferJob& job, const ProgressHandler& progress,
                                       const NotedHandler& noted)
{
    Progress state{0, job.totalSize, 0};
    ThroughputMeter meter;
    auto lastReport = ThroughputMeter::Clock::now();
    meter.sample(lastReport, 0);
    auto shouldStop = [this] { return m_stopRequested.load(); };
    auto sized = [&](qint64 total) { state.total = total; };
    auto advanced = [&](qint64 bytes) {
        state.done += bytes;
        const auto now = ThroughputMeter::Clock::now();
        if (now - lastReport < reportInterval)
            return;
        meter.sample(now, state.done);
        // Bytes taken back after a cut-off are no speed.
        state.bytesPerSecond = std::max(0.0, meter.bytesPerSecond());
        lastReport = now;
        progress(state);
    };
    return m_runner->run(job, TransferRunner::Context{shouldStop, sized, advanced, noted});
}
