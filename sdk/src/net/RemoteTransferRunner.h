#pragma once

#include "sdk/net/RemoteEndpoint.h"
#include "sdk/transfers/TransferRunner.h"

#include <memory>

class Database;
class QNetworkAccessManager;

// Transfers with a team server. Made on the queue's worker thread, it keeps
// there one network access manager, whose connections the transfers of the
// queue share, and a connection to the local database where downloads are
// recorded and replaced files cached.
class RemoteTransferRunner : public TransferRunner
{
public:
    // A request that moves no byte for this long has failed.
    static constexpr int transferTimeoutMs = 30000;

    RemoteTransferRunner(const RemoteEndpoint& endpoint, const QString& databaseFolder);
    ~RemoteTransferRunner() override;

    TransferResult run(const TransferJob& job, const Context& context) override;

private:
    RemoteEndpoint m_endpoint;
    QString m_databaseFolder;
    std::unique_ptr<QNetworkAccessManager> m_network;
    std::unique_ptr<Database> m_database;
};
