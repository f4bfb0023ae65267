#include "sdk/remote/RemoteUserSession.h"

#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/base/MainThread.h"
#include "sdk/base/ServiceError.h"
#include "sdk/base/SqlStatement.h"
#include "sdk/net/RemoteTransfers.h"
#include "sdk/remote/RemoteError.h"
#include "sdk/store/UserFolders.h"
#include "sdk/transfers/SavedTransfers.h"
#include "sdk/transfers/TransferQueue.h"
#include "sdk/transfers/TransfersLog.h"

#include "service/VLRTransferReporting.h"

#include <QFileInfo>

void RemoteUserSession::resumeSavedTransfers()
{
    const auto weak = weakSelf();
    onService([weak, userId = userID()](Database& database) {
        const auto saved = SavedTransfers::load(database, userId);
        if (!saved) {
            qCWarning(lcTransfers, "The saved transfers could not be read: %s",
                      qUtf8Printable(database.errorMessage()));
            return;
        }
        MainThread::post([weak, saved] {
            auto self = weak.lock();
            if (!self || self->m_ended)
                return;
            const auto uploads = std::static_pointer_cast<TransferQueue>(self->uploader());
            const auto downloads = std::static_pointer_cast<TransferQueue>(self->downloader());
            // Whatever finished meanwhile in this session stays listed after them.
            self->setCompletedTransfers(saved->finished(uploads, downloads) + self->completedTransfers());
            saved->resume(uploads, downloads);
        });
    });
}

vlr::OptionalError RemoteUserSession::uploadRefusal(const QUrl& fileURL, const QFileInfo& source,
                                                    const QString& workspaceIdentifier) const
{
    if (m_ended)
        return RemoteError::make(RemoteError::NotSignedIn);
    if (!fileURL.isLocalFile() || !source.exists())
        return ServiceError::make(ServiceError::FileUnreadable,
                                  QStringLiteral("\"%1\": No such file or directory").arg(source.fileName()));
    if (!m_byId.contains(workspaceIdentifier))
        return ServiceError::make(ServiceError::WorkspaceNotFound);
    return std::nullopt;
}

// The server says what the link names; the download then goes to the given
// folder, or to the workspace's folder in ~/Veluria.
void RemoteUserSession::requestDownload(const QString& url, const QString& folder,
                                        const VLRTransferHandler& completionHandler)
{
    auto answer = [completionHandler](const VLRTransferReportingPtr& transfer, const vlr::OptionalError& error) {
        if (completionHandler)
            completionHandler(transfer, error);
    };
    if (m_ended) {
        const vlr::Error error = RemoteError::make(RemoteError::NotSignedIn);
        return MainThread::post([answer, error] { answer(nullptr, error); });
    }
    const auto weak = weakSelf();
    auto folderFor = [weak, folder](const QString& workspaceId) {
        if (!folder.isEmpty())
            return folder;
        const auto self = weak.lock();
        const RemoteWorkspacePtr workspace = self ? self->m_byId.value(workspaceId) : nullptr;
        return UserFolders::workspaceFolder(workspace ? workspace->name() : workspaceId, workspaceId);
    };
    RemoteTransfers::resolveDownloadLink(
        *RemoteApi::network(m_endpoint), m_endpoint, url, userID(), VLRTransferReporting::RequestedDownloadSubType,
        folderFor, [weak, answer](const std::optional<TransferJob>& job, const vlr::OptionalError& error) {
            auto self = weak.lock();
            if (error || !job || !self || self->m_ended) {
                if (self && error)
                    self->failed(*error);
                return answer(nullptr, error ? error : RemoteError::make(RemoteError::NotSignedIn));
            }
            answer(std::static_pointer_cast<TransferQueue>(self->downloader())->add(*job), std::nullopt);
        });
}

// A newer revision of a file that this user has downloaded comes down by
// itself, into the place of each earlier download that is still there.
void RemoteUserSession::queueRevisionDownload(const EventStream::Event& event)
{
    const QString workspaceId = event.data.value(QStringLiteral("workspace")).toString();
    const QJsonObject described =
        event.kind == "revision" ? event.data : event.data.value(QStringLiteral("revision")).toObject();
    const auto revision = RemoteTransfers::Revision::fromJson(described, workspaceId);
    if (!revision || m_ended || event.data.value(QStringLiteral("userID")).toString() == userID())
        return;
    const TransferJob planned =
        RemoteTransfers::downloadJob(userID(), *revision, QString(), VLRTransferReporting::AutoRevisionSubType);
    const auto weak = weakSelf();
    onService([weak, planned](Database& database) {
        QList<TransferJob> jobs;
        SqlStatement earlier(database.handle(),
                             "SELECT path FROM downloads WHERE user_id = ?1 AND asset_id = ?2 AND revision_id != ?3");
        earlier.bind(1, planned.userId).bind(2, RemoteTransfers::assetOf(planned)).bind(3, planned.revisionId);
        while (earlier.next()) {
            if (!QFileInfo::exists(earlier.text(0)))
                continue;
            TransferJob job = planned;
            job.id = Clock::newIdentifier();
            job.filePath = earlier.text(0);
            jobs.append(job);
        }
        queueDownloadsLater(weak, jobs);
    });
}
