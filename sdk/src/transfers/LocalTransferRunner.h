#pragma once

#include "sdk/transfers/TransferRunner.h"

class Database;

// Transfers of the embedded service: through the content store beside the
// database. A failed transfer's partial files go, so that a retry starts
// afresh.
class LocalTransferRunner : public TransferRunner
{
public:
    static Factory factory(const QString& databaseFolder);

    explicit LocalTransferRunner(const QString& databaseFolder);
    ~LocalTransferRunner() override;

    TransferResult run(const TransferJob& job, const Context& context) override;

private:
    QString m_databaseFolder;
    std::unique_ptr<Database> m_database;
};
