#include "sdk/local/LocalUserSession.h"

#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/base/MainThread.h"
#include "sdk/base/ServiceError.h"
#include "sdk/base/SqlStatement.h"
#include "sdk/store/SafeName.h"
#include "sdk/store/UserFolders.h"
#include "sdk/transfers/DownloadLink.h"
#include "sdk/transfers/TransferLeftovers.h"
#include "sdk/transfers/TransferStore.h"
#include "sdk/transfers/TransfersLog.h"

#include "service/VLRTransferReporting.h"

#include <QDir>
#include <QFileInfo>

namespace {

// Where a download of the file goes in the folder: its own name, unless
// another file has that name; the file of an earlier download of the same
// file is replaced.
QString targetIn(Database& database, const QString& userId, const QString& folder,
                 const WorkspaceStore::Revision& revision)
{
    const QString name = SafeName::component(revision.assetName);
    QString target = folder + QLatin1Char('/') + name;
    for (int number = 2;; ++number) {
        const QFileInfo info(target);
        if (!info.exists() && !info.isSymLink())
            return target;
        SqlStatement earlier(database.handle(),
                             "SELECT 1 FROM downloads WHERE user_id = ?1 AND path = ?2 AND asset_id = ?3");
        earlier.bind(1, userId).bind(2, target).bind(3, revision.assetId);
        if (earlier.next())
            return target;
        target = folder + QLatin1Char('/') + SafeName::numbered(name, number);
    }
}

TransferJob downloadJob(const QString& userId, const WorkspaceStore::Revision& revision, const QString& target,
                        qint64 subType)
{
    TransferJob job;
    job.id = Clock::newIdentifier();
    job.userId = userId;
    job.type = TransferJob::Download;
    job.subType = subType;
    job.filePath = target;
    job.totalSize = revision.size;
    job.workspaceId = revision.workspaceId;
    job.revisionId = revision.id;
    job.createdAt = Clock::nowMs();
    return job;
}

} // namespace

bool LocalUserSession::allTransfersPaused() const
{
    return transfersPaused();
}

void LocalUserSession::transferCompleted(const QueuedTransferPtr& transfer)
{
    VLRTransferList list = completedTransfers();
    list.append(transfer);
    setCompletedTransfers(list);
}

bool LocalUserSession::takeCompletedTransfer(const QueuedTransferPtr& transfer)
{
    VLRTransferList list = completedTransfers();
    if (!list.removeOne(transfer))
        return false;
    setCompletedTransfers(list);
    return true;
}

void LocalUserSession::persistTransfer(const TransferJob& job)
{
    onService([job](Database& database) {
        if (!TransferStore(database).save(job))
            qCWarning(lcTransfers, "A transfer could not be saved: %s", qUtf8Printable(database.errorMessage()));
    });
}

void LocalUserSession::forgetTransfer(const QString& id)
{
    onService([id](Database& database) {
        if (!TransferStore(database).remove(id))
            qCWarning(lcTransfers, "A transfer could not be removed: %s", qUtf8Printable(database.errorMessage()));
    });
}

void LocalUserSession::discardPartials(const TransferJob& job)
{
    const QString folder = m_databaseFolder;
    onService([job, folder](Database&) { TransferLeftovers::discard(job, folder); });
}

void LocalUserSession::uploadAndPublishNewRevision(const QUrl& fileURL, const QString& workspaceIdentifier, bool,
                                                   const QString& publicationText, vlr::OptionalError* error)
{
    if (error)
        error->reset();
    auto refuse = [error](const vlr::Error& reason) {
        if (error)
            *error = reason;
    };
    const QFileInfo source(fileURL.toLocalFile());
    if (m_ended)
        return refuse(ServiceError::make(ServiceError::SignedOut));
    if (!fileURL.isLocalFile() || !source.exists())
        return refuse(ServiceError::make(ServiceError::FileUnreadable,
                                         QStringLiteral("\"%1\": No such file or directory").arg(source.fileName())));
    if (m_account.needsConfirmation)
        return refuse(ServiceError::make(ServiceError::NeedsConfirmation));
    if (!m_directory.find(workspaceIdentifier))
        return refuse(ServiceError::make(ServiceError::WorkspaceNotFound));
    TransferJob job;
    job.id = Clock::newIdentifier();
    job.userId = userID();
    job.type = TransferJob::Upload;
    job.filePath = source.absoluteFilePath();
    job.totalSize = source.isDir() ? 0 : source.size();
    job.workspaceId = workspaceIdentifier;
    job.text = publicationText.isNull() ? QStringLiteral("") : publicationText;
    job.createdAt = Clock::nowMs();
    std::static_pointer_cast<TransferQueue>(uploader())->add(job);
}

void LocalUserSession::pauseAllTransfers(bool pause)
{
    if (m_ended || pause == transfersPaused())
        return;
    setTransfersPaused(pause);
    for (const auto& queue : {uploader(), downloader()}) {
        auto local = std::static_pointer_cast<TransferQueue>(queue);
        if (pause)
            local->interrupt();
        else
            local->schedule();
    }
}

void LocalUserSession::clearCompletedTransfers()
{
    if (m_ended || completedTransfers().isEmpty())
        return;
    // A failed transfer kept what it had copied for a retry; that goes now.
    for (const VLRTransferReportingPtr& transfer : completedTransfers())
        if (transfer->error())
            discardPartials(std::static_pointer_cast<QueuedTransfer>(transfer)->job());
    setCompletedTransfers({});
    const QString userId = userID();
    onService([userId](Database& database) {
        if (!TransferStore(database).removeFinished(userId))
            qCWarning(lcTransfers, "The completed transfers could not be removed: %s",
                      qUtf8Printable(database.errorMessage()));
    });
}

void LocalUserSession::downloadUrl(const QString& url, const VLRTransferHandler& completionHandler)
{
    requestDownload(url, QString(), completionHandler);
}

void LocalUserSession::downloadUrl(const QString& url, const QUrl& toURL, const VLRTransferHandler& completionHandler)
{
    if (!toURL.isLocalFile()) {
        if (completionHandler)
            MainThread::post([completionHandler] { completionHandler(nullptr, ServiceError::cancelled()); });
        return;
    }
    requestDownload(url, QDir::cleanPath(toURL.toLocalFile()), completionHandler);
}

// Resolves the link on the service thread, then queues the download on the
// GUI thread. Without a folder it goes to the workspace's folder in ~/Veluria.
void LocalUserSession::requestDownload(const QString& url, const QString& folder,
                                       const VLRTransferHandler& completionHandler)
{
    auto answer = [completionHandler](const VLRTransferReportingPtr& transfer, const vlr::OptionalError& error) {
        if (completionHandler)
            completionHandler(transfer, error);
    };
    const auto link = DownloadLink::parse(url);
    vlr::OptionalError refusal;
    if (m_ended)
        refusal = ServiceError::make(ServiceError::SignedOut);
    else if (!link)
        refusal = ServiceError::make(ServiceError::InvalidLink);
    if (refusal) {
        MainThread::post([answer, refusal] { answer(nullptr, refusal); });
        return;
    }
    const auto weak = weakSelf();
    const QString userId = userID();
    onService(
        [weak, userId, link, folder, answer](Database& database) {
            WorkspaceStore workspaces(database);
            const auto revision = workspaces.revision(link->revisionId);
            vlr::OptionalError error;
            TransferJob job;
            if (!revision || revision->workspaceId != link->workspaceId)
                error = ServiceError::make(ServiceError::RevisionNotFound);
            else if (!workspaces.isMember(revision->workspaceId, userId))
                error = ServiceError::make(ServiceError::NotAMember);
            else
                job = downloadJob(userId, *revision,
                                  targetIn(database, userId,
                                           folder.isEmpty() ? UserFolders::workspaceFolder(revision->workspaceName,
                                                                                           revision->workspaceId)
                                                            : folder,
                                           *revision),
                                  VLRTransferReporting::RequestedDownloadSubType);
            MainThread::post([weak, job, error, answer] {
                auto self = weak.lock();
                if (!self || self->m_ended)
                    return answer(nullptr, ServiceError::make(ServiceError::SignedOut));
                if (error)
                    return answer(nullptr, error);
                answer(std::static_pointer_cast<TransferQueue>(self->downloader())->add(job), std::nullopt);
            });
        },
        [answer](const QString& failure) {
            MainThread::post(
                [answer, failure] { answer(nullptr, ServiceError::make(ServiceError::DatabaseFailure, failure)); });
        });
}

// A newer revision of a file that this user has downloaded comes down by
// itself, into the place of the earlier one.
void LocalUserSession::queueRevisionDownloads(const QList<WorkspaceStore::Publication>& publications)
{
    QStringList revisions;
    for (const WorkspaceStore::Publication& publication : publications)
        if (!publication.revisionId.isEmpty() && publication.userId != userID())
            revisions.append(publication.revisionId);
    if (revisions.isEmpty() || m_ended)
        return;
    const auto weak = weakSelf();
    const QString userId = userID();
    onService([weak, userId, revisions](Database& database) {
        QList<TransferJob> jobs;
        WorkspaceStore workspaces(database);
        for (const QString& revisionId : revisions) {
            const auto revision = workspaces.revision(revisionId);
            if (!revision)
                continue;
            SqlStatement earlier(
                database.handle(),
                "SELECT path FROM downloads WHERE user_id = ?1 AND asset_id = ?2 AND revision_id != ?3");
            earlier.bind(1, userId).bind(2, revision->assetId).bind(3, revision->id);
            while (earlier.next()) {
                if (!QFileInfo::exists(earlier.text(0)))
                    continue;
                jobs.append(downloadJob(userId, *revision, earlier.text(0), VLRTransferReporting::AutoRevisionSubType));
            }
        }
        if (jobs.isEmpty())
            return;
        MainThread::post([weak, jobs] {
            auto self = weak.lock();
            if (!self || self->m_ended)
                return;
            for (const TransferJob& job : jobs)
                std::static_pointer_cast<TransferQueue>(self->downloader())->add(job);
        });
    });
}
