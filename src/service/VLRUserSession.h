#pragma once

#include "service/VLRLoginCredentials.h"
#include "service/VLRObject.h"
#include "service/VLRTypes.h"

#include <QUrl>

class VLRUserSessionDelegate;

using VLRSignInHandler = std::function<void(const VLRUserSessionPtr& session, const VLRLoginVerifierPtr& verifier,
                                            const vlr::OptionalError& error)>;
using VLRSizeHandler = std::function<void(qint64 bytes, const vlr::OptionalError& error)>;
using VLRTransferHandler =
    std::function<void(const VLRTransferReportingPtr& transfer, const vlr::OptionalError& error)>;
using VLRWorkspaceHandler = std::function<void(const VLRWorkspacePtr& workspace, const vlr::OptionalError& error)>;
using VLRTextHandler = std::function<void(const QString& text, const vlr::OptionalError& error)>;

// A signed-in session: the account, its workspaces and marketplace, and the
// two transfer queues. Observable: user, projects, workspaces,
// completedTransfers, syncingWorkspaces, syncingLists, transfersPaused,
// installers, purchases.
class VLRUserSession : public VLRObject
{
public:
    // The key paths of the observable properties.
    struct Key
    {
        static constexpr QLatin1StringView user{"user"};
        static constexpr QLatin1StringView projects{"projects"};
        static constexpr QLatin1StringView workspaces{"workspaces"};
        static constexpr QLatin1StringView completedTransfers{"completedTransfers"};
        static constexpr QLatin1StringView syncingWorkspaces{"syncingWorkspaces"};
        static constexpr QLatin1StringView syncingLists{"syncingLists"};
        static constexpr QLatin1StringView transfersPaused{"transfersPaused"};
        static constexpr QLatin1StringView installers{"installers"};
        static constexpr QLatin1StringView purchases{"purchases"};
    };

    static constexpr qint64 NewestFirstSortOrder = 3;

    const VLRUserPtr& user() const { return m_user; }
    const QString& userID() const { return m_userID; }
    const VLRObjectList& projects() const { return m_projects; }
    const VLRWorkspaceList& workspaces() const { return m_workspaces; }
    const VLRTransferList& completedTransfers() const { return m_completedTransfers; }
    bool syncingWorkspaces() const { return m_syncingWorkspaces; }
    bool syncingLists() const { return m_syncingLists; }
    bool transfersPaused() const { return m_transfersPaused; }
    const VLRInstallerList& installers() const { return m_installers; }
    const VLRPurchaseList& purchases() const { return m_purchases; }
    bool hasPurchases() const { return m_hasPurchases; }
    bool hasWorkspaces() const { return m_hasWorkspaces; }
    const VLRTransferQueuePtr& uploader() const { return m_uploader; }
    const VLRTransferQueuePtr& downloader() const { return m_downloader; }
    const VLRInstallerUpdaterPtr& updater() const { return m_updater; }
    VLRUserSessionDelegate* delegate() const { return m_delegate; }

    // Not owned.
    void setDelegate(VLRUserSessionDelegate* delegate) { m_delegate = delegate; }

    // Returns whether the order is known; callers may ignore it.
    virtual bool sortWorkspaces(qint64 order) = 0;
    // An error means the session was not ended. The handler may be empty.
    virtual void logoutWithCompletionHandler(const VLRErrorHandler& handler) = 0;
    virtual void getDownloadCacheSizeWithCompletionHandler(const VLRSizeHandler& handler) = 0;
    virtual void setDownloadCacheSize(qint64 bytes) = 0;
    virtual void downloadUrl(const QString& url, const VLRTransferHandler& completionHandler) = 0;
    virtual void downloadUrl(const QString& url, const QUrl& toURL, const VLRTransferHandler& completionHandler) = 0;
    virtual VLRWorkspacePtr workspaceFromID(const QString& identifier) const = 0;
    virtual void createNewWorkspaceWithName(const QString& name, const VLRWorkspaceHandler& completionHandler) = 0;
    virtual void publishText(const QString& text, const QString& intoWorkspaceWithID,
                             const VLRTextHandler& completionHandler) = 0;
    // Queues the upload and returns at once; a failure to queue comes back in
    // error.
    virtual void uploadAndPublishNewRevision(const QUrl& fileURL, const QString& workspaceIdentifier, bool publish,
                                             const QString& publicationText, vlr::OptionalError* error) = 0;
    virtual void createNewInstallerWithName(
        const QString& name, const QVariant& type, const QVariant& description, const QVariant& platform,
        const QVariant& packageIdentifiers, const QList<QUrl>& fileURLs, bool silentInstall, const QVariant& productIDs,
        const QUrl& imageURL,
        const std::function<void(const VLRInstallerPtr&, const vlr::OptionalError&)>& completionHandler) = 0;
    virtual void uploadAndPublishNewInstaller(const QUrl& fileURL, const QString& installerID,
                                              const QVariantMap& installerVersionInfo, vlr::OptionalError* error) = 0;
    virtual void pauseAllTransfers(bool pause) = 0;
    virtual void clearCompletedTransfers() = 0;

    QVariant valueForKey(const QString& key) const override;

protected:
    // Changed by the service library and the test double alone; their
    // subclasses publish these.
    void setUser(const VLRUserPtr& value) { changeValue(m_user, value, Key::user); }
    void setUserID(const QString& value) { m_userID = value; }
    void setProjects(const VLRObjectList& value) { changeValue(m_projects, value, Key::projects); }
    void setWorkspaces(const VLRWorkspaceList& value) { changeValue(m_workspaces, value, Key::workspaces); }
    void setCompletedTransfers(const VLRTransferList& value)
    {
        changeValue(m_completedTransfers, value, Key::completedTransfers);
    }
    void setSyncingWorkspaces(bool value) { changeValue(m_syncingWorkspaces, value, Key::syncingWorkspaces); }
    void setSyncingLists(bool value) { changeValue(m_syncingLists, value, Key::syncingLists); }
    void setTransfersPaused(bool value) { changeValue(m_transfersPaused, value, Key::transfersPaused); }
    void setInstallers(const VLRInstallerList& value) { changeValue(m_installers, value, Key::installers); }
    void setPurchases(const VLRPurchaseList& value) { changeValue(m_purchases, value, Key::purchases); }
    void setHasPurchases(bool value) { m_hasPurchases = value; }
    void setHasWorkspaces(bool value) { m_hasWorkspaces = value; }
    void setUploader(const VLRTransferQueuePtr& value) { m_uploader = value; }
    void setDownloader(const VLRTransferQueuePtr& value) { m_downloader = value; }
    void setUpdater(const VLRInstallerUpdaterPtr& value) { m_updater = value; }

private:
    VLRUserPtr m_user;
    QString m_userID;
    VLRObjectList m_projects;
    VLRWorkspaceList m_workspaces;
    VLRTransferList m_completedTransfers;
    bool m_syncingWorkspaces = false;
    bool m_syncingLists = false;
    bool m_transfersPaused = false;
    VLRInstallerList m_installers;
    VLRPurchaseList m_purchases;
    bool m_hasPurchases = false;
    bool m_hasWorkspaces = false;
    VLRTransferQueuePtr m_uploader;
    VLRTransferQueuePtr m_downloader;
    VLRInstallerUpdaterPtr m_updater;
    VLRUserSessionDelegate* m_delegate = nullptr;
};
