#include "sdk/transfers/TransferJob.h"

#include "sdk/base/Clock.h"

TransferJob TransferJob::download(const QString& userId, const QString& workspaceId, const QString& revisionId,
                                  qint64 size, const QString& target, qint64 subType)
{
    TransferJob job;
    job.id = Clock::newIdentifier();
    job.userId = userId;
    job.type = Download;
    job.subType = subType;
    job.filePath = target;
    job.totalSize = size;
    job.workspaceId = workspaceId;
    job.revisionId = revisionId;
    job.createdAt = Clock::nowMs();
    return job;
}
