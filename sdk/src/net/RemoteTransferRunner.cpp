#include "sdk/net/RemoteTransferRunner.h"

#include "sdk/base/Database.h"
#include "sdk/base/ServiceError.h"
#include "sdk/net/RemoteDownloadRun.h"
#include "sdk/net/RemoteUploadRun.h"

#include <QNetworkAccessManager>

RemoteTransferRunner::RemoteTransferRunner(const RemoteEndpoint& endpoint, const QString& databaseFolder)
    : m_endpoint(endpoint)
    , m_databaseFolder(databaseFolder)
    , m_network(std::make_unique<QNetworkAccessManager>())
{
    m_network->setTransferTimeout(transferTimeoutMs);
}

RemoteTransferRunner::~RemoteTransferRunner() = default;

TransferResult RemoteTransferRunner::run(const TransferJob& job, const Context& context)
{
    if (job.type == TransferJob::Upload)
        return RemoteUploadRun(*m_network, m_endpoint, job, context).run();
    QString failure;
    if (!m_database)
        m_database = Database::open(m_databaseFolder, &failure);
    if (!m_database)
        return TransferResult::failed(ServiceError::make(ServiceError::DatabaseFailure, failure));
    return RemoteDownloadRun(*m_network, m_endpoint, *m_database, m_databaseFolder, job, context).run();
}
