#include "sdk/transfers/QueueingUserSession.h"

#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/base/MainThread.h"
#include "sdk/base/ServiceError.h"
#include "sdk/base/ServiceThread.h"
#include "sdk/transfers/Reaper.h"
#include "sdk/transfers/TransferLeftovers.h"
#include "sdk/transfers/TransferQueue.h"
#include "sdk/transfers/TransferStore.h"
#include "sdk/transfers/TransfersLog.h"

#include "service/VLRTransferReporting.h"

#include <QDir>

QueueingUserSession::QueueingUserSession(const QString& databaseFolder)
    : m_databaseFolder(databaseFolder)
{
    if (!m_databaseFolder.isEmpty())
        m_service = std::make_unique<ServiceThread>();
}

QueueingUserSession::~QueueingUserSession() = default;

bool QueueingUserSession::allTransfersPaused() const
{
    return transfersPaused();
}

void QueueingUserSession::transferCompleted(const QueuedTransferPtr& transfer)
{
    VLRTransferList list = completedTransfers();
    list.append(transfer);
    setCompletedTransfers(list);
}

bool QueueingUserSession::takeCompletedTransfer(const QueuedTransferPtr& transfer)
{
    VLRTransferList list = completedTransfers();
    if (!list.removeOne(transfer))
        return false;
    setCompletedTransfers(list);
    return true;
}

void QueueingUserSession::persistTransfer(const TransferJob& job)
{
    onService([job](Database& database) {
        if (!TransferStore(database).save(job))
            qCWarning(lcTransfers, "A transfer could not be saved: %s", qUtf8Printable(database.errorMessage()));
    });
}

void QueueingUserSession::forgetTransfer(const QString& id)
{
    onService([id](Database& database) {
        if (!TransferStore(database).remove(id))
            qCWarning(lcTransfers, "A transfer could not be removed: %s", qUtf8Printable(database.errorMessage()));
    });
}

void QueueingUserSession::discardPartials(const TransferJob& job)
{
    onService([job](Database& database) { TransferLeftovers::discard(job, database.folder()); });
}

void QueueingUserSession::downloadUrl(const QString& url, const VLRTransferHandler& completionHandler)
{
    requestDownload(url, QString(), completionHandler);
}

void QueueingUserSession::downloadUrl(const QString& url, const QUrl& toURL,
                                      const VLRTransferHandler& completionHandler)
{
    if (!toURL.isLocalFile()) {
        if (completionHandler)
            MainThread::post([completionHandler] { completionHandler(nullptr, ServiceError::cancelled()); });
        return;
    }
    requestDownload(url, QDir::cleanPath(toURL.toLocalFile()), completionHandler);
}

void QueueingUserSession::pauseAllTransfers(bool pause)
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

void QueueingUserSession::clearCompletedTransfers()
{
    if (m_ended || completedTransfers().isEmpty())
        return;
    // A failed transfer kept what it had copied for a retry; that goes now.
    for (const VLRTransferReportingPtr& transfer : completedTransfers())
        if (transfer->error())
            discardPartials(std::static_pointer_cast<QueuedTransfer>(transfer)->job());
    setCompletedTransfers({});
    onService([userId = userID()](Database& database) {
        if (!TransferStore(database).removeFinished(userId))
            qCWarning(lcTransfers, "The completed transfers could not be removed: %s",
                      qUtf8Printable(database.errorMessage()));
    });
}

// Every uploaded revision is published with its text, so `publish` is not
// read.
void QueueingUserSession::uploadAndPublishNewRevision(const QUrl& fileURL, const QString& workspaceId, bool,
                                                      const QString& publicationText, vlr::OptionalError* error)
{
    // A folder handed over as ".../Name/" is still called Name.
    const QFileInfo source(QDir::cleanPath(fileURL.toLocalFile()));
    const vlr::OptionalError refusal = uploadRefusal(fileURL, source, workspaceId);
    if (error)
        *error = refusal;
    if (refusal)
        return;
    TransferJob job;
    job.id = Clock::newIdentifier();
    job.userId = userID();
    job.type = TransferJob::Upload;
    job.filePath = source.absoluteFilePath();
    // A folder's size is known once its upload has gone through it.
    job.totalSize = source.isDir() ? 0 : source.size();
    job.workspaceId = workspaceId;
    job.text = publicationText.isNull() ? QStringLiteral("") : publicationText;
    job.createdAt = Clock::nowMs();
    std::static_pointer_cast<TransferQueue>(uploader())->add(job);
}

void QueueingUserSession::queueDownloadsLater(const std::weak_ptr<QueueingUserSession>& session,
                                              const QList<TransferJob>& jobs)
{
    if (jobs.isEmpty())
        return;
    MainThread::post([session, jobs] {
        auto self = session.lock();
        if (!self || self->m_ended)
            return;
        for (const TransferJob& job : jobs)
            std::static_pointer_cast<TransferQueue>(self->downloader())->add(job);
    });
}

void QueueingUserSession::onService(std::function<void(Database& database)> task,
                                    std::function<void(const QString&)> failed)
{
    if (!m_service)
        return;
    m_service->post(
        [folder = m_databaseFolder, task = std::move(task), failed = std::move(failed)](ServiceThread& thread) {
            QString failure;
            if (Database* database = thread.database(folder, &failure))
                task(*database);
            else if (failed)
                failed(failure);
            else
                qCWarning(lcTransfers, "The database can't be opened: %s", qUtf8Printable(failure));
        });
}

void QueueingUserSession::stopTransfers(std::function<void()> beforeStop)
{
    for (const VLRTransferQueuePtr& queue : {uploader(), downloader()})
        if (auto transfers = std::static_pointer_cast<TransferQueue>(queue))
            transfers->suspend();
    // The last writes of the transfers' state still go to the database.
    Reaper::retire(
        [beforeStop = std::move(beforeStop), service = std::shared_ptr<ServiceThread>(std::move(m_service))] {
            if (beforeStop)
                beforeStop();
            if (service)
                service->finishAndStop();
        });
}
