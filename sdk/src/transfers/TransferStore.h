#pragma once

#include "sdk/transfers/TransferJob.h"

#include <QList>
#include <QStringList>

#include <optional>

class Database;

// The transfers of each user in the database, so that queues and the
// completed list outlive the client.
class TransferStore
{
public:
    explicit TransferStore(Database& database);

    bool save(const TransferJob& job);
    bool remove(const QString& id);
    bool removeFinished(const QString& userId);
    // The identifiers of every user's unfinished uploads.
    std::optional<QStringList> unfinishedUploads();
    // Unfinished ones in queue order, or finished ones newest last.
    std::optional<QList<TransferJob>> load(const QString& userId, bool finished);

private:
    Database& m_database;
};
