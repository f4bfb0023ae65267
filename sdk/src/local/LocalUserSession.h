#pragma once

#include "sdk/accounts/AccountStore.h"
#include "sdk/catalogue/CatalogSnapshot.h"
#include "sdk/transfers/QueueingUserSession.h"
#include "sdk/transfers/SavedTransfers.h"
#include "sdk/transfers/TransferQueue.h"
#include "sdk/workspaces/WorkspaceDirectory.h"

class SessionMarketplace;
class SessionWatcher;

// A session of the embedded local service. Database work runs on the
// session's service thread, bytes on the two queues' workers, and the
// watcher hears what others change; every change that the client observes
// is made here, on the GUI thread.
//
// Every uploaded revision is published in its workspace with its text;
// whether the URL is a folder is read from the disk. A folder is uploaded
// whole and downloaded as a folder again.
class LocalUserSession : public QueueingUserSession
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
    VLRWorkspacePtr workspaceFromID(const QString& identifier) const override;
    void createNewWorkspaceWithName(const QString& name, const VLRWorkspaceHandler& completionHandler) override;
    void publishText(const QString& text, const QString& intoWorkspaceWithID,
                     const VLRTextHandler& completionHandler) override;
    void createNewInstallerWithName(
        const QString& name, const QVariant& type, const QVariant& description, const QVariant& platform,
        const QVariant& packageIdentifiers, const QList<QUrl>& fileURLs, bool silentInstall, const QVariant& productIDs,
        const QUrl& imageURL,
        const std::function<void(const VLRInstallerPtr&, const vlr::OptionalError&)>& completionHandler) override;
    void uploadAndPublishNewInstaller(const QUrl& fileURL, const QString& installerID,
                                      const QVariantMap& installerVersionInfo, vlr::OptionalError* error) override;

    // The client holds this session now: what it may have missed while
    // binding is told again.
    void sessionWasBound();
    // Stops all work of the session; queued transfers stay for the next one.
    void end();

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
    vlr::OptionalError uploadRefusal(const QUrl& fileURL, const QFileInfo& source,
                                     const QString& workspaceIdentifier) const override;
    void requestDownload(const QString& url, const QString& folder,
                         const VLRTransferHandler& completionHandler) override;
    void passwordWasChanged();
    void serviceWasLost();

    AccountStore::Account m_account;
    qint64 m_lastPublicationSeq;
    WorkspaceDirectory m_directory;
    std::unique_ptr<SessionWatcher> m_watcher;
    std::shared_ptr<SessionMarketplace> m_market;
    std::shared_ptr<void> m_registration;
};
