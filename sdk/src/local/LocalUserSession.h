#pragma once

#include "sdk/accounts/AccountStore.h"
#include "sdk/catalogue/CatalogSnapshot.h"
#include "sdk/transfers/SavedTransfers.h"
#include "sdk/transfers/TransferQueue.h"
#include "sdk/transfers/TransferQueueHost.h"
#include "sdk/workspaces/WorkspaceDirectory.h"

#include "service/VLRUserSession.h"

class SessionMarketplace;
class ServiceThread;
class SessionWatcher;

// A session of the embedded local service. Database work runs on the
// session's service thread, bytes on the two queues' workers, and the
// watcher hears what others change; every change that the client observes
// is made here, on the GUI thread.
//
// Every uploaded revision is published in its workspace with its text;
// whether the URL is a folder is read from the disk. A folder is uploaded
// whole and downloaded as a folder again.
class LocalUserSession : public VLRUserSession, public TransferQueueHost
{
public:
    struct Start
    {
        AccountStore::Account account;
        QString databaseFolder;
        bool hasWorkspaces = false;
        qint64 lastPublicationSeq = 0;
    };

    // Made on the GUI thread; the lists load at once, with syncingLists true
    // until they are there.
    static std::shared_ptr<LocalUserSession> create(const Start& start);
    ~LocalUserSession() override;

    bool sortWorkspaces(qint64 order) override;
    void logoutWithCompletionHandler(const VLRErrorHandler& handler) override;
    void getDownloadCacheSizeWithCompletionHandler(const VLRSizeHandler& handler) override;
    void setDownloadCacheSize(qint64 bytes) override;
    void downloadUrl(const QString& url, const VLRTransferHandler& completionHandler) override;
    void downloadUrl(const QString& url, const QUrl& toURL, const VLRTransferHandler& completionHandler) override;
    VLRWorkspacePtr workspaceFromID(const QString& identifier) const override;
    void createNewWorkspaceWithName(const QString& name, const VLRWorkspaceHandler& completionHandler) override;
    void publishText(const QString& text, const QString& intoWorkspaceWithID,
                     const VLRTextHandler& completionHandler) override;
    void uploadAndPublishNewRevision(const QUrl& fileURL, const QString& workspaceIdentifier, bool publish,
                                     const QString& publicationText, vlr::OptionalError* error) override;
    void createNewInstallerWithName(
        const QString& name, const QVariant& type, const QVariant& description, const QVariant& platform,
        const QVariant& packageIdentifiers, const QList<QUrl>& fileURLs, bool silentInstall, const QVariant& productIDs,
        const QUrl& imageURL,
        const std::function<void(const VLRInstallerPtr&, const vlr::OptionalError&)>& completionHandler) override;
    void uploadAndPublishNewInstaller(const QUrl& fileURL, const QString& installerID,
                                      const QVariantMap& installerVersionInfo, vlr::OptionalError* error) override;
    void pauseAllTransfers(bool pause) override;
    void clearCompletedTransfers() override;

    // The client holds this session now: what it may have missed while
    // binding is told again.
    void sessionWasBound();
    // Stops all work of the session; queued transfers stay for the next one.
    void end();
    bool hasEnded() const { return m_ended; }

    // TransferQueueHost
    bool allTransfersPaused() const override;
    void transferCompleted(const QueuedTransferPtr& transfer) override;
    bool takeCompletedTransfer(const QueuedTransferPtr& transfer) override;
    void persistTransfer(const TransferJob& job) override;
    void forgetTransfer(const QString& id) override;
    void discardPartials(const TransferJob& job) override;

private:
    struct Loaded
    {
        CatalogSnapshot catalog;
        SavedTransfers transfers;
    };

    explicit LocalUserSession(const Start& start);
    std::weak_ptr<LocalUserSession> weakSelf();
    void loadLists();
    void listsLoaded(const Loaded& loaded);
    void startWatching(qint64 catalogVersion);
    void openMarketplace();
    void applyCatalog(const CatalogSnapshot& snapshot);
    void announce(const QList<WorkspaceStore::Publication>& publications);
    void queueRevisionDownloads(const QList<WorkspaceStore::Publication>& publications);
    void requestDownload(const QString& url, const QString& folder, const VLRTransferHandler& completionHandler);
    void passwordWasChanged();
    void serviceWasLost();
    // Runs a database task of this session off the GUI thread.
    void onService(std::function<void(Database& database)> task, std::function<void(const QString&)> failed = {});

    AccountStore::Account m_account;
    QString m_databaseFolder;
    qint64 m_lastPublicationSeq;
    WorkspaceDirectory m_directory;
    std::unique_ptr<ServiceThread> m_service;
    std::unique_ptr<SessionWatcher> m_watcher;
    std::shared_ptr<SessionMarketplace> m_market;
    std::shared_ptr<void> m_registration;
    bool m_ended = false;
};
