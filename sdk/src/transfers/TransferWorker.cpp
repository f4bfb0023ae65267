#include "sdk/transfers/TransferWorker.h"

#include "sdk/base/Database.h"
#include "sdk/base/ServiceError.h"
#include "sdk/transfers/DownloadRun.h"
#include "sdk/transfers/ThroughputMeter.h"
#include "sdk/transfers/TransferLeftovers.h"
#include "sdk/transfers/UploadRun.h"

TransferWorker::TransferWorker(const QString& databaseFolder)
    : m_databaseFolder(databaseFolder)
    , m_thread([this] { run(); })
{ }

TransferWorker::~TransferWorker()
{
    shutdown();
}

void TransferWorker::start(const TransferJob& job, ProgressHandler progress, FinishedHandler finished)
{
    {
        std::lock_guard lock(m_mutex);
        m_stopRequested = false;
        m_next = Assignment{job, std::move(progress), std::move(finished)};
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
        const TransferResult result = perform(assignment.job, assignment.progress);
        if (result.outcome == TransferResult::Outcome::Failed)
            TransferLeftovers::discard(assignment.job, m_databaseFolder);
        assignment.finished(result);
    }
    m_database.reset();
}

TransferResult TransferWorker::perform(const TransferJob& job, const ProgressHandler& progress)
{
    QString failure;
    if (!m_database || m_database->folder() != m_databaseFolder)
        m_database = Database::open(m_databaseFolder, &failure);
    if (!m_database)
        return TransferResult::failed(ServiceError::make(ServiceError::DatabaseFailure, failure));

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
        state.bytesPerSecond = meter.bytesPerSecond();
        lastReport = now;
        progress(state);
    };
    if (job.type == TransferJob::Upload)
        return UploadRun(job, m_databaseFolder, *m_database, shouldStop, sized, advanced).run();
    return DownloadRun(job, m_databaseFolder, *m_database, shouldStop, advanced).run();
}
