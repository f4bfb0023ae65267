#include "sdk/local/LocalUserSession.h"

#include "sdk/base/Database.h"
#include "sdk/base/MainThread.h"
#include "sdk/base/ServiceError.h"
#include "sdk/base/SqlStatement.h"
#include "sdk/store/SafeName.h"
#include "sdk/store/UserFolders.h"
#include "sdk/transfers/DownloadLink.h"

#include "service/VLRTransferReporting.h"

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

} // namespace

vlr::OptionalError LocalUserSession::uploadRefusal(const QUrl& fileURL, const QFileInfo& source,
                                                   const QString& workspaceIdentifier) const
{
    if (m_ended)
        return ServiceError::make(ServiceError::SignedOut);
    if (!fileURL.isLocalFile() || !source.exists())
        return ServiceError::make(ServiceError::FileUnreadable,
                                  QStringLiteral("\"%1\": No such file or directory").arg(source.fileName()));
    if (m_account.needsConfirmation)
        return ServiceError::make(ServiceError::NeedsConfirmation);
    if (!m_directory.find(workspaceIdentifier))
        return ServiceError::make(ServiceError::WorkspaceNotFound);
    return std::nullopt;
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
                job = TransferJob::download(userId, revision->workspaceId, revision->id, revision->size,
                                            targetIn(database, userId,
                                                     folder.isEmpty() ? UserFolders::workspaceFolder(
                                                         revision->workspaceName, revision->workspaceId)
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
                jobs.append(TransferJob::download(userId, revision->workspaceId, revision->id, revision->size,
                                                  earlier.text(0), VLRTransferReporting::AutoRevisionSubType));
            }
        }
        queueDownloadsLater(weak, jobs);
    });
}
