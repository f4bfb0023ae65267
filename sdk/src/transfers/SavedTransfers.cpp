#include "sdk/transfers/SavedTransfers.h"

#include "sdk/base/Database.h"
#include "sdk/transfers/QueuedTransfer.h"
#include "sdk/transfers/TransferLeftovers.h"
#include "sdk/transfers/TransferQueue.h"
#include "sdk/transfers/TransferStore.h"

#include <QSet>

std::optional<SavedTransfers> SavedTransfers::load(Database& database, const QString& userId)
{
    TransferStore store(database);
    auto queued = store.load(userId, false);
    auto completed = store.load(userId, true);
    if (!queued || !completed)
        return std::nullopt;
    QSet<QString> resumableTargets;
    for (const TransferJob& job : std::as_const(*queued))
        resumableTargets.insert(job.filePath);
    for (const TransferJob& job : std::as_const(*completed))
        if (job.error && !resumableTargets.contains(job.filePath))
            TransferLeftovers::discard(job, database.folder());
    return SavedTransfers{*queued, *completed};
}

VLRTransferList SavedTransfers::finished(const std::shared_ptr<TransferQueue>& uploads,
                                         const std::shared_ptr<TransferQueue>& downloads) const
{
    VLRTransferList list;
    list.reserve(completed.size());
    for (const TransferJob& job : completed)
        list.append(std::make_shared<QueuedTransfer>(job, job.type == TransferJob::Upload ? uploads : downloads));
    return list;
}

void SavedTransfers::resume(const std::shared_ptr<TransferQueue>& uploads,
                            const std::shared_ptr<TransferQueue>& downloads) const
{
    for (const TransferJob& job : queued)
        (job.type == TransferJob::Upload ? uploads : downloads)->add(job);
}
