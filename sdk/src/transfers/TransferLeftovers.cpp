#include "sdk/transfers/TransferLeftovers.h"

#include "sdk/base/Database.h"
#include "sdk/store/ContentStore.h"
#include "sdk/transfers/DownloadRun.h"
#include "sdk/transfers/TransferStore.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace {

// An upload's partial files are named "<transfer id>-<file number>.part".
QString transferOf(const QString& partialName)
{
    const qsizetype dash = partialName.lastIndexOf(QLatin1Char('-'));
    return dash > 0 ? partialName.left(dash) : QString();
}

} // namespace

void TransferLeftovers::discard(const TransferJob& job, const QString& databaseFolder)
{
    if (job.type == TransferJob::Upload) {
        ContentStore(databaseFolder).removeLeftovers([&](const QString& name) { return transferOf(name) != job.id; });
        return;
    }
    const QString partial = DownloadRun::partialPathFor(job.filePath);
    if (QFileInfo(partial).isDir())
        QDir(partial).removeRecursively();
    else
        QFile::remove(partial);
}

int TransferLeftovers::sweep(Database& database)
{
    const auto queued = TransferStore(database).unfinishedUploads();
    if (!queued)
        return 0;
    const QSet<QString> resumable(queued->begin(), queued->end());
    return ContentStore(database.folder()).removeLeftovers([&](const QString& name) {
        return resumable.contains(transferOf(name));
    });
}

int TransferLeftovers::sweepAll(const QString& databaseFolder)
{
    return ContentStore(databaseFolder).removeLeftovers({});
}
