#include "sdk/transfers/UploadRun.h"

#include "sdk/accounts/AccountStore.h"
#include "sdk/base/Database.h"
#include "sdk/base/ServiceError.h"
#include "sdk/store/ContentStore.h"
#include "sdk/store/ResumableCopy.h"
#include "sdk/store/SafeName.h"
#include "sdk/workspaces/WorkspaceStore.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

UploadRun::UploadRun(const TransferJob& job, const QString& databaseFolder, Database& database,
                     std::function<bool()> shouldStop, std::function<void(qint64 total)> sized,
                     std::function<void(qint64 bytes)> advanced)
    : m_job(job)
    , m_databaseFolder(databaseFolder)
    , m_database(database)
    , m_shouldStop(std::move(shouldStop))
    , m_sized(std::move(sized))
    , m_advanced(std::move(advanced))
{ }

// The service refuses uploads from accounts that may not publish there.
TransferResult UploadRun::refusal()
{
    AccountStore accounts(m_database);
    const auto account = accounts.findById(m_job.userId);
    if (!account)
        return TransferResult::failed(ServiceError::make(ServiceError::SignedOut));
    if (account->needsConfirmation)
        return TransferResult::failed(ServiceError::make(ServiceError::NeedsConfirmation));
    WorkspaceStore workspaces(m_database);
    if (!workspaces.workspace(m_job.workspaceId))
        return TransferResult::failed(ServiceError::make(ServiceError::WorkspaceNotFound));
    if (!workspaces.isMember(m_job.workspaceId, m_job.userId))
        return TransferResult::failed(ServiceError::make(ServiceError::NotAMember));
    return TransferResult();
}

QList<UploadRun::Item> UploadRun::items(qint64* totalSize) const
{
    QList<Item> found;
    *totalSize = 0;
    const QFileInfo source(m_job.filePath);
    if (!source.isDir()) {
        found.append(Item{m_job.filePath, QString()});
        *totalSize = source.size();
        return found;
    }
    const QDir root(m_job.filePath);
    QDirIterator files(m_job.filePath, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        found.append(Item{path, root.relativeFilePath(path)});
        *totalSize += QFileInfo(path).size();
    }
    std::sort(found.begin(), found.end(), [](const Item& a, const Item& b) { return a.relativePath < b.relativePath; });
    return found;
}

TransferResult UploadRun::copyFailed(const StoreBatch::Failure& failure)
{
    if (failure.sourceChanged) {
        QFile::remove(failure.partial);
        return TransferResult::failed(ServiceError::make(ServiceError::FileChanged, failure.text));
    }
    return TransferResult::failed(ServiceError::make(
        failure.onSource ? ServiceError::FileUnreadable : ServiceError::FileUnwritable, failure.text));
}

// A single file is synced and renamed into place on its own.
std::optional<TransferResult> UploadRun::storeFile(const ContentStore& store, const Item& item, QByteArray* content)
{
    const QString partial = store.partialPath(QStringLiteral("%1-0").arg(m_job.id));
    ResumableCopy copy(item.source, partial, m_shouldStop, m_advanced);
    switch (copy.run()) {
    case ResumableCopy::Outcome::Stopped:
        return TransferResult::stopped();
    case ResumableCopy::Outcome::Failed:
        return copyFailed(StoreBatch::Failure{partial, copy.failure(), copy.sourceChanged(), copy.failedOnSource()});
    case ResumableCopy::Outcome::Done:
        break;
    }
    QString failure;
    if (!store.commit(partial, copy.digest(), &failure))
        return TransferResult::failed(ServiceError::make(ServiceError::FileUnwritable, failure));
    *content = copy.digest();
    return std::nullopt;
}

// A folder's files and their manifest reach the disk together, by one
// sync of the store rather than one for each file.
std::optional<TransferResult> UploadRun::storeFolder(const ContentStore& store, const QList<Item>& files,
                                                     QByteArray* content)
{
    QList<StoreBatch::Entry> entries;
    entries.reserve(files.size());
    for (qsizetype index = 0; index < files.size(); ++index)
        entries.append({files.at(index).source, store.partialPath(QStringLiteral("%1-%2").arg(m_job.id).arg(index))});
    StoreBatch batch(store, m_shouldStop, m_advanced);
    switch (batch.copy(entries)) {
    case ResumableCopy::Outcome::Stopped:
        return TransferResult::stopped();
    case ResumableCopy::Outcome::Failed:
        return copyFailed(batch.failure());
    case ResumableCopy::Outcome::Done:
        break;
    }
    QJsonArray manifest;
    for (qsizetype index = 0; index < files.size(); ++index)
        manifest.append(QJsonObject{{QStringLiteral("path"), files.at(index).relativePath},
                                    {QStringLiteral("content"), QString::fromLatin1(batch.copied().at(index).digest)},
                                    {QStringLiteral("size"), batch.copied().at(index).size}});
    QString failure;
    *content =
        batch.stage(QJsonDocument(QJsonObject{{QStringLiteral("entries"), manifest}}).toJson(QJsonDocument::Compact),
                    QStringLiteral("%1-manifest").arg(m_job.id), &failure);
    if (content->isNull() || !batch.commit(&failure))
        return TransferResult::failed(ServiceError::make(ServiceError::FileUnwritable, failure));
    return std::nullopt;
}

TransferResult UploadRun::run()
{
    const QFileInfo source(m_job.filePath);
    if (!source.exists())
        return TransferResult::failed(ServiceError::make(
            ServiceError::FileUnreadable, QStringLiteral("\"%1\": No such file or directory").arg(source.fileName())));
    TransferResult refused = refusal();
    if (refused.outcome != TransferResult::Outcome::Completed)
        return refused;

    const ContentStore store(m_databaseFolder);
    QString failure;
    if (!store.prepare(&failure))
        return TransferResult::failed(ServiceError::make(ServiceError::FileUnwritable, failure));

    qint64 totalSize = 0;
    const QList<Item> files = items(&totalSize);
    m_sized(totalSize);
    const bool isFolder = source.isDir();
    QByteArray content;
    if (auto ended = isFolder ? storeFolder(store, files, &content) : storeFile(store, files.first(), &content))
        return *ended;
    WorkspaceStore workspaces(m_database);
    TransferResult result;
    result.totalSize = totalSize;
    result.revisionId = workspaces.addRevision(m_job.workspaceId, m_job.userId, SafeName::component(source.fileName()),
                                               QString::fromLatin1(content), isFolder, totalSize, m_job.text);
    if (result.revisionId.isNull())
        return TransferResult::failed(ServiceError::make(ServiceError::DatabaseFailure, m_database.errorMessage()));
    result.filePath = m_job.filePath;
    return result;
}
