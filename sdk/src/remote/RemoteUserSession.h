#pragma once

#include "sdk/marketplace/SessionMarketplace.h"
#include "sdk/net/RemoteEndpoint.h"
#include "sdk/remote/EventStream.h"
#include "sdk/remote/PushPosition.h"
#include "sdk/remote/RemoteApi.h"
#include "sdk/remote/RemoteWorkspace.h"
#include "sdk/transfers/QueueingUserSession.h"

#include <QHash>
#include <QImage>
#include <QJsonArray>
#include <QSet>

#include <memory>

class RemoteWorkspaceUser;

// A session of a team server, signed in with a token. Its lists come from
// the server's API, its news from the push stream; every change that the
// client observes is made on the GUI thread, which it never blocks.
//
// A publication announced by push first brings the workspace list up to
// date (its order and dates, and a workspace the user was just added to),
// then goes to the delegate, one call per workspace. Members are read at
// the start, for workspaces new to the list, and whenever the stream stands
// again after a break. A changed password (the server ends the account's
// sessions and says so on the stream) ends the session through the
// delegate's passwordChanged.
//
// Files go up and down on the two queues' workers, by the team server's
// runner; downloads are recorded in the local database as the embedded
// service's are. The queues are kept there too, under the user's id (which
// the server made, so no other server's user has it): a transfer that a
// sign-out or quit interrupts goes on in the next session of that user. A
// newer revision of a file that the user downloaded comes down by itself,
// into the place of the earlier one.
class RemoteUserSession : public QueueingUserSession
{
public:
    static constexpr qint64 DefaultDownloadCacheSize = 1000000000;

    // From what the sign-in read: the account (GET user) and its workspaces.
    static std::shared_ptr<RemoteUserSession> create(const RemoteEndpoint& endpoint, const QJsonObject& user,
                                                     const QJsonArray& workspaces);
    ~RemoteUserSession() override;

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

    // Whether the push stream stands.
    bool isReachable() const;

private:
    RemoteUserSession(const RemoteEndpoint& endpoint, const QString& userId);
    std::weak_ptr<RemoteUserSession> weakSelf();

    void applyUser(const QJsonObject& user);
    // Takes the server's list; returns the workspaces new to it.
    QList<RemoteWorkspacePtr> applyWorkspaces(const QJsonArray& list);
    void loadMembers(const QList<RemoteWorkspacePtr>& workspaces, std::function<void()> done);
    void applyMembers(const RemoteWorkspacePtr& workspace, const QJsonArray& members);
    void wantAvatar(const QString& userId);
    void avatarArrived(const QString& userId, const QImage& avatar);
    void refresh(bool allMembers);
    void refreshed(qsizetype announceable);
    void startStream();
    // The marketplace from the server's catalogue, read again on each
    // catalog event.
    void openMarketplace();
    void eventArrived(const EventStream::Event& event);
    // The first `count` publications that wait for the list.
    void announcePending(qsizetype count);
    void rememberPosition();
    // A failure of any request: a token the server no longer takes ends the
    // session and tells the delegate.
    void failed(const vlr::Error& error);
    void end();
    vlr::OptionalError uploadRefusal(const QUrl& fileURL, const QFileInfo& source,
                                     const QString& workspaceIdentifier) const override;
    void requestDownload(const QString& url, const QString& folder,
                         const VLRTransferHandler& completionHandler) override;
    void resumeSavedTransfers();
    // The revision of a publication or of a "revision" event, when somebody
    // else's.
    void queueRevisionDownload(const EventStream::Event& event);

    RemoteEndpoint m_endpoint;
    PushPosition m_position;
    std::unique_ptr<EventStream> m_stream;
    std::shared_ptr<SessionMarketplace> m_market;
    std::shared_ptr<void> m_registration;
    QHash<QString, RemoteWorkspacePtr> m_byId;
    QHash<QString, QImage> m_avatars;
    QSet<QString> m_avatarsAsked;
    QList<EventStream::Event> m_pending;
    bool m_refreshing = false;
    bool m_refreshAgain = false;
    bool m_refreshAllMembers = false;
    bool m_streamWasDown = false;
    qint64 m_downloadCacheSize = DefaultDownloadCacheSize;
};
