#include "sdk/transfers/LocalTransferRunner.h"

#include "sdk/base/Database.h"
#include "sdk/base/ServiceError.h"
#include "sdk/transfers/DownloadRun.h"
#include "sdk/transfers/TransferLeftovers.h"
#include "sdk/transfers/UploadRun.h"

TransferRunner::Factory LocalTransferRunner::factory(const QString& databaseFolder)
{
    return [databaseFolder] { return std::make_unique<LocalTransferRunner>(databaseFolder); };
}

LocalTransferRunner::LocalTransferRunner(const QString& databaseFolder)
    : m_databaseFolder(databaseFolder)
{ }

LocalTransferRunner::~LocalTransferRunner() = default;

TransferResult LocalTransferRunner::run(const TransferJob& job, const Context& context)
{
    QString failure;
    if (!m_database)
        m_database = Database::open(m_databaseFolder, &failure);
    if (!m_database)
        return TransferResult::failed(ServiceError::make(ServiceError::DatabaseFailure, failure));
    const TransferResult result = job.type == TransferJob::Upload
        ? UploadRun(job, m_databaseFolder, *m_database, context.shouldStop, context.sized, context.advanced).run()
        : DownloadRun(job, m_databaseFolder, *m_database, context.shouldStop, context.advanced).run();
    if (result.outcome == TransferResult::Outcome::Failed)
        TransferLeftovers::discard(job, m_databaseFolder);
    return result;
}
