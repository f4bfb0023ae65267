#include "sdk/remote/RemoteUserSession.h"

#include "sdk/base/Clock.h"
#include "sdk/base/MainThread.h"
#include "sdk/base/ServiceError.h"
#include "sdk/net/RemoteTransfers.h"
#include "sdk/remote/RemoteError.h"
#include "sdk/store/UserFolders.h"
#include "sdk/transfers/TransferLeftovers.h"
#include "sdk/transfers/TransferQueue.h"

#include "service/VLRTransferReporting.h"

#include <QDir>
#include <QFileInfo>

namespace {

// A download that a person asked for, as opposed to an automatic one.
constexpr qint64 RequestedDownload = 1;

} // namespace

bool RemoteUserSession::allTransfersPaused() const
{
    return transfersPaused();
}

void RemoteUserSession::transferCompleted(const QueuedTransferPtr& transfer)
{
    VLRTransferList list = completedTransfers();
    list.append(transfer);
    setCompletedTransfers(list);
}

bool RemoteUserSession::takeCompletedTransfer(const QueuedTransferPtr& transfer)
{
    VLRTransferList list = completedTransfers();
    if (!list.removeOne(transfer))
        return false;
    setCompletedTransfers(list);
    return true;
}

// The queues of a team server's session are kept for as long as it lasts.
void RemoteUserSession::persistTransfer(const TransferJob&)
{ }

void RemoteUserSession::forgetTransfer(const QString&)
{ }

void RemoteUserSession::discardPartials(const TransferJob& job)
{
    TransferLeftovers::discard(job, m_databaseFolder);
}

void RemoteUserSession::uploadAndPublishNewRevision(const QUrl& fileURL, const QString& workspaceIdentifier, bool,
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
        return refuse(RemoteError::make(RemoteError::NotSignedIn));
    if (!fileURL.isLocalFile() || !source.isFile())
        return refuse(ServiceError::make(ServiceError::FileUnreadable,
                                         QStringLiteral("\"%1\": No such file").arg(source.fileName())));
    if (!m_byId.contains(workspaceIdentifier))
        return refuse(ServiceError::make(ServiceError::WorkspaceNotFound));
    TransferJob job;
    job.id = Clock::newIdentifier();
    job.userId = userID();
    job.type = TransferJob::Upload;
    job.filePath = source.absoluteFilePath();
    job.totalSize = source.size();
    job.workspaceId = workspaceIdentifier;
    job.text = publicationText.isNull() ? QStringLiteral("") : publicationText;
    job.createdAt = Clock::nowMs();
    std::static_pointer_cast<TransferQueue>(uploader())->add(job);
}

void RemoteUserSession::pauseAllTransfers(bool pause)
{
    if (m_ended || pause == transfersPaused())
        return;
    setTransfersPaused(pause);
    for (const VLRTransferQueuePtr& queue : {uploader(), downloader()}) {
        auto transfers = std::static_pointer_cast<TransferQueue>(queue);
        if (pause)
            transfers->interrupt();
        else
            transfers->schedule();
    }
}

void RemoteUserSession::clearCompletedTransfers()
{
    if (m_ended || completedTransfers().isEmpty())
        return;
    // A failed transfer kept what it had copied for a retry; that goes now.
    for (const VLRTransferReportingPtr& transfer : completedTransfers())
        if (transfer->error())
            discardPartials(std::static_pointer_cast<QueuedTransfer>(transfer)->job());
    setCompletedTransfers({});
}

void RemoteUserSession::downloadUrl(const QString& url, const VLRTransferHandler& completionHandler)
{
    requestDownload(url, QString(), completionHandler);
}

void RemoteUserSession::downloadUrl(const QString& url, const QUrl& toURL, const VLRTransferHandler& completionHandler)
{
    if (!toURL.isLocalFile()) {
        if (completionHandler)
            MainThread::post([completionHandler] { completionHandler(nullptr, ServiceError::cancelled()); });
        return;
    }
    requestDownload(url, QDir::cleanPath(toURL.toLocalFile()), completionHandler);
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
        *RemoteApi::network(m_endpoint), m_endpoint, url, userID(), RequestedDownload, folderFor,
        [weak, answer](const std::optional<TransferJob>& job, const vlr::OptionalError& error) {
            auto self = weak.lock();
            if (error || !job || !self || self->m_ended) {
                if (self && error)
                    self->failed(*error);
                return answer(nullptr, error ? error : RemoteError::make(RemoteError::NotSignedIn));
            }
            answer(std::static_pointer_cast<TransferQueue>(self->downloader())->add(*job), std::nullopt);
        });
}
