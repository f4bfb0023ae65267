#include "sdk/transfers/DownloadRun.h"

#include "sdk/accounts/AccountStore.h"
#include "sdk/base/Database.h"
#include "sdk/base/PrivateFiles.h"
#include "sdk/base/ServiceError.h"
#include "sdk/base/SqlStatement.h"
#include "sdk/store/ContentStore.h"
#include "sdk/store/ResumableCopy.h"
#include "sdk/store/SafeName.h"
#include "sdk/transfers/DownloadCache.h"
#include "sdk/transfers/TransfersLog.h"
#include "sdk/workspaces/WorkspaceStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

// Whether an earlier download of this user put the file at this path.
bool isEarlierDownload(Database& database, const QString& userId, const QString& path)
{
    SqlStatement statement(database.handle(), "SELECT 1 FROM downloads WHERE user_id = ?1 AND path = ?2");
    statement.bind(1, userId).bind(2, path);
    return statement.next();
}

} // namespace

DownloadRun::DownloadRun(const TransferJob& job, const QString& databaseFolder, Database& database,
                         std::function<bool()> shouldStop, std::function<void(qint64 bytes)> advanced)
    : m_job(job)
    , m_databaseFolder(databaseFolder)
    , m_database(database)
    , m_shouldStop(std::move(shouldStop))
    , m_advanced(std::move(advanced))
{ }

vlr::Error DownloadRun::unwritable(const QString& path)
{
    return ServiceError::make(
        ServiceError::FileUnwritable,
        QStringLiteral("\"%1\": %2").arg(QFileInfo(path).fileName(), QString::fromLocal8Bit(std::strerror(errno))));
}

QString DownloadRun::partialPathFor(const QString& target)
{
    const QFileInfo info(target);
    return info.path() + QLatin1Char('/') + SafeName::hiddenPartial(info.fileName());
}

TransferResult DownloadRun::run()
{
    WorkspaceStore workspaces(m_database);
    const auto revision = workspaces.revision(m_job.revisionId);
    if (!revision)
        return TransferResult::failed(ServiceError::make(ServiceError::RevisionNotFound));
    if (!workspaces.isMember(revision->workspaceId, m_job.userId))
        return TransferResult::failed(ServiceError::make(ServiceError::NotAMember));
    const QString folder = QFileInfo(m_job.filePath).path();
    if (!PrivateFiles::makeFolder(folder))
        return TransferResult::failed(unwritable(folder));

    const ContentStore store(m_databaseFolder);
    const QByteArray digest = revision->content.toLatin1();
    TransferResult result = revision->isFolder ? copyFolder(store, digest, partialPathFor(m_job.filePath))
                                               : copyFile(store, digest, partialPathFor(m_job.filePath));
    if (result.outcome != TransferResult::Outcome::Completed)
        return result;
    return putInPlace(m_database, m_databaseFolder, m_job, partialPathFor(m_job.filePath), revision->assetId,
                      revision->id);
}

TransferResult DownloadRun::copyFile(const ContentStore& store, const QByteArray& digest, const QString& partial)
{
    if (!store.contains(digest))
        return TransferResult::failed(
            ServiceError::make(ServiceError::ContentDamaged, QFileInfo(m_job.filePath).fileName()));
    ResumableCopy copy(store.pathOf(digest), partial, m_shouldStop, m_advanced);
    switch (copy.run()) {
    case ResumableCopy::Outcome::Stopped:
        return TransferResult::stopped();
    case ResumableCopy::Outcome::Failed:
        return TransferResult::failed(
            copy.failedOnSource()
                ? ServiceError::make(ServiceError::ContentDamaged, QFileInfo(m_job.filePath).fileName())
                : ServiceError::make(ServiceError::FileUnwritable, copy.failure()));
    case ResumableCopy::Outcome::Done:
        break;
    }
    if (copy.digest() != digest) {
        QFile::remove(partial);
        return TransferResult::failed(
            ServiceError::make(ServiceError::ContentDamaged, QFileInfo(m_job.filePath).fileName()));
    }
    TransferResult result;
    result.totalSize = copy.size();
    return result;
}

TransferResult DownloadRun::copyFolder(const ContentStore& store, const QByteArray& manifestDigest,
                                       const QString& partialFolder)
{
    const QByteArray manifest = store.read(manifestDigest);
    const QJsonDocument document = QJsonDocument::fromJson(manifest);
    if (manifest.isNull() || !document.isObject())
        return TransferResult::failed(
            ServiceError::make(ServiceError::ContentDamaged, QFileInfo(m_job.filePath).fileName()));
    if (!PrivateFiles::makeFolder(partialFolder))
        return TransferResult::failed(unwritable(partialFolder));
    TransferResult result;
    const QJsonArray entries = document.object().value(QStringLiteral("entries")).toArray();
    for (const QJsonValue& value : entries) {
        const QJsonObject entry = value.toObject();
        // The paths were written by another member's client: each part is
        // made safe, and the whole must stay inside the folder.
        const QStringList parts = SafeName::relativePath(entry.value(QStringLiteral("path")).toString());
        if (parts.isEmpty())
            continue;
        const QString target = partialFolder + QLatin1Char('/') + parts.join(QLatin1Char('/'));
        if (!SafeName::staysUnder(partialFolder, target))
            return TransferResult::failed(ServiceError::make(ServiceError::InvalidName, parts.join(QLatin1Char('/'))));
        if (!PrivateFiles::makeFolder(QFileInfo(target).path()))
            return TransferResult::failed(unwritable(target));
        if (QFileInfo(target).exists())
            continue;
        const QString partial = partialPathFor(target);
        TransferResult copied = copyFile(store, entry.value(QStringLiteral("content")).toString().toLatin1(), partial);
        if (copied.outcome != TransferResult::Outcome::Completed)
            return copied;
        if (::rename(QFile::encodeName(partial).constData(), QFile::encodeName(target).constData()) != 0)
            return TransferResult::failed(unwritable(target));
        result.totalSize += copied.totalSize;
    }
    return result;
}

TransferResult DownloadRun::putInPlace(Database& database, const QString& databaseFolder, const TransferJob& job,
                                       const QString& partial, const QString& assetId, const QString& revisionId)
{
    QString target = job.filePath;
    if (QFileInfo(target).exists() || QFileInfo(target).isSymLink()) {
        if (isEarlierDownload(database, job.userId, target)) {
            QString failure;
            DownloadCache cache(database, databaseFolder);
            AccountStore accounts(database);
            const auto account = accounts.findById(job.userId);
            if (!cache.keep(job.userId, target, &failure))
                return TransferResult::failed(ServiceError::make(ServiceError::FileUnwritable, failure));
            cache.trim(job.userId, account ? account->downloadCacheSize : DownloadCache::defaultLimit);
        } else {
            const QFileInfo planned(job.filePath);
            for (int number = 2; QFileInfo(target).exists() || QFileInfo(target).isSymLink(); ++number)
                target = planned.path() + QLatin1Char('/') + SafeName::numbered(planned.fileName(), number);
        }
    }
    if (::rename(QFile::encodeName(partial).constData(), QFile::encodeName(target).constData()) != 0)
        return TransferResult::failed(unwritable(target));
    PrivateFiles::syncFolder(QFileInfo(target).path());
    SqlStatement record(database.handle(),
                        "INSERT OR REPLACE INTO downloads(user_id, asset_id, revision_id, path) "
                        "VALUES(?1, ?2, ?3, ?4)");
    // The file is in place whatever happens here; without its record a newer
    // revision will not replace it by itself, which the log tells.
    if (!record.bind(1, job.userId).bind(2, assetId).bind(3, revisionId).bind(4, target).run())
        qCWarning(lcTransfers, "The download of %s could not be recorded: %s",
                  qUtf8Printable(QFileInfo(target).fileName()), qUtf8Printable(database.errorMessage()));
    TransferResult result;
    result.filePath = target;
    return result;
}
