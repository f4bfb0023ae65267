#pragma once

#include "sdk/transfers/TransferJob.h"

#include "service/VLRUserSession.h"

#include <QList>

#include <memory>
#include <optional>

class Database;
class TransferQueue;

// A user's transfers as an earlier session left them in the database: the
// unfinished ones go on, the finished ones are listed again.
struct SavedTransfers
{
    QList<TransferJob> queued;
    QList<TransferJob> completed;

    // Off the GUI thread. A failed transfer that no queued one will resume
    // loses what it had copied: a retry starts afresh.
    static std::optional<SavedTransfers> load(Database& database, const QString& userId);
    // On the GUI thread: the completed list, then the unfinished ones queued
    // again once it is shown.
    VLRTransferList finished(const std::shared_ptr<TransferQueue>& uploads,
                             const std::shared_ptr<TransferQueue>& downloads) const;
    void resume(const std::shared_ptr<TransferQueue>& uploads, const std::shared_ptr<TransferQueue>& downloads) const;
};
