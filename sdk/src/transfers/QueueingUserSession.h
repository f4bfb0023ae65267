#pragma once

#include "sdk/transfers/TransferQueueHost.h"

#include "service/VLRUserSession.h"

#include <QFileInfo>

#include <functional>
#include <memory>

class Database;
class ServiceThread;

// What every session does with its two transfer queues: pausing them all,
// the completed list, the queues' record in the local database, and the
// service thread that does the database work in order, off the GUI thread.
// A session without a database folder keeps no record.
class QueueingUserSession : public VLRUserSession, public TransferQueueHost
{
public:
    ~QueueingUserSession() override;

    void downloadUrl(const QString& url, const VLRTransferHandler& completionHandler) override;
    void downloadUrl(const QString& url, const QUrl& toURL, const VLRTransferHandler& completionHandler) override;
    void uploadAndPublishNewRevision(const QUrl& fileURL, const QString& workspaceIdentifier, bool publish,
                                     const QString& publicationText, vlr::OptionalError* error) override;
    void pauseAllTransfers(bool pause) override;
    void clearCompletedTransfers() override;
    bool hasEnded() const { return m_ended; }

    // TransferQueueHost
    bool allTransfersPaused() const override;
    void transferCompleted(const QueuedTransferPtr& transfer) override;
    bool takeCompletedTransfer(const QueuedTransferPtr& transfer) override;
    void persistTransfer(const TransferJob& job) override;
    void forgetTransfer(const QString& id) override;
    void discardPartials(const TransferJob& job) override;

protected:
    explicit QueueingUserSession(const QString& databaseFolder);

    // Queues the download that a link names, into the folder, or into the
    // workspace's folder in ~/Veluria when there is none.
    virtual void requestDownload(const QString& url, const QString& folder,
                                 const VLRTransferHandler& completionHandler) = 0;
    // Why the file can't be uploaded into the workspace now, if it can't.
    virtual vlr::OptionalError uploadRefusal(const QUrl& fileURL, const QFileInfo& source,
                                             const QString& workspaceIdentifier) const = 0;
    // From any thread: the downloads join the queue on the GUI thread,
    // unless the session has ended by then.
    static void queueDownloadsLater(const std::weak_ptr<QueueingUserSession>& session, const QList<TransferJob>& jobs);
    // Runs a database task of this session off the GUI thread; `failed`
    // hears when the database can't be opened.
    void onService(std::function<void(Database& database)> task, std::function<void(const QString&)> failed = {});
    // Stops both queues where they are and lets the service thread finish
    // the writes it was given, after `beforeStop`, on a thread of its own.
    void stopTransfers(std::function<void()> beforeStop = {});

    const QString m_databaseFolder;
    bool m_ended = false;

private:
    std::unique_ptr<ServiceThread> m_service;
};
