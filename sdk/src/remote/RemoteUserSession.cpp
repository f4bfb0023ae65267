#include "sdk/remote/RemoteUserSession.h"

#include "sdk/accounts/LocalUser.h"
#include "sdk/accounts/SessionRegistry.h"
#include "sdk/base/DatabaseLocation.h"
#include "sdk/base/MainThread.h"
#include "sdk/marketplace/ServerMarketSource.h"
#include "sdk/net/RemoteTransfers.h"
#include "sdk/remote/PendingSignOuts.h"
#include "sdk/remote/RemoteError.h"
#include "sdk/remote/RemoteLog.h"
#include "sdk/remote/RemoteWorkspaceUser.h"
#include "sdk/transfers/TransferQueue.h"
#include "sdk/workspaces/LocalPublication.h"

#include "service/VLRUser.h"
#include "service/VLRUserSessionDelegate.h"

#include <algorithm>

namespace {

QString text(const QJsonObject& object, const char* key)
{
    return object.value(QLatin1String(key)).toString();
}

QString localFolder(const QUrl& folder)
{
    return folder.isLocalFile() ? folder.toLocalFile() : QString();
}

void answerLater(const VLRTextHandler& handler, const vlr::Error& error)
{
    if (handler)
        MainThread::post([handler, error] { handler(QString(), error); });
}

} // namespace

std::shared_ptr<RemoteUserSession> RemoteUserSession::create(const RemoteEndpoint& endpoint, const QJsonObject& user,
                                                             const QJsonArray& workspaces)
{
    std::shared_ptr<RemoteUserSession> session(new RemoteUserSession(endpoint, text(user, "id")));
    session->applyUser(user);
    const QList<RemoteWorkspacePtr> all = session->applyWorkspaces(workspaces);
    session->setHasWorkspaces(!all.isEmpty());
    session->setSyncingLists(true);
    const auto weak = session->weakSelf();
    session->loadMembers(all, [weak] {
        if (auto self = weak.lock(); self && self->syncingLists())
            self->setSyncingLists(false);
    });
    session->m_registration = SessionRegistry::add([weak] {
        if (auto self = weak.lock())
            self->end();
    });
    session->resumeSavedTransfers();
    session->openMarketplace();
    session->startStream();
    return session;
}

RemoteUserSession::RemoteUserSession(const RemoteEndpoint& endpoint, const QString& userId)
    : QueueingUserSession(localFolder(DatabaseLocation::current()))
    , m_endpoint(endpoint)
    , m_position(endpoint.base, userId)
{
    setUserID(userId);
    setUploader(std::make_shared<TransferQueue>(RemoteTransfers::runner(endpoint, m_databaseFolder), *this));
    setDownloader(std::make_shared<TransferQueue>(RemoteTransfers::runner(endpoint, m_databaseFolder), *this));
}

RemoteUserSession::~RemoteUserSession()
{
    m_ended = true;
}

std::weak_ptr<RemoteUserSession> RemoteUserSession::weakSelf()
{
    return std::static_pointer_cast<RemoteUserSession>(shared_from_this());
}

void RemoteUserSession::applyUser(const QJsonObject& json)
{
    auto user = std::make_shared<LocalUser>();
    user->setFirstName(text(json, "firstName"));
    user->setLastName(text(json, "lastName"));
    user->setEmail(text(json, "email"));
    user->setNeedsConfirmation(json.value(QStringLiteral("needsConfirmation")).toBool());
    user->setAvatar(m_avatars.value(userID()));
    setUser(user);
    if (json.value(QStringLiteral("hasAvatar")).toBool())
        wantAvatar(userID());
}

QList<RemoteWorkspacePtr> RemoteUserSession::applyWorkspaces(const QJsonArray& list)
{
    QList<RemoteWorkspacePtr> fresh;
    QList<RemoteWorkspacePtr> ordered;
    bool changed = false;
    for (const QJsonValue& value : list) {
        const QJsonObject object = value.toObject();
        const QString id = text(object, "id");
        if (id.isEmpty())
            continue;
        RemoteWorkspacePtr workspace = m_byId.value(id);
        if (!workspace) {
            workspace = std::make_shared<RemoteWorkspace>(id, m_endpoint);
            fresh.append(workspace);
        }
        const QString name = text(object, "name");
        const QDateTime updatedAt = QDateTime::fromString(text(object, "updatedAt"), Qt::ISODateWithMs);
        if (workspace->name() != name || workspace->updatedAt() != updatedAt) {
            workspace->setName(name);
            workspace->setUpdatedAt(updatedAt);
            changed = true;
        }
        ordered.append(workspace);
    }
    std::stable_sort(ordered.begin(), ordered.end(), [](const RemoteWorkspacePtr& a, const RemoteWorkspacePtr& b) {
        return a->updatedAt() > b->updatedAt();
    });
    VLRWorkspaceList shown(ordered.begin(), ordered.end());
    changed = changed || shown != workspaces();
    m_byId.clear();
    for (const RemoteWorkspacePtr& workspace : std::as_const(ordered))
        m_byId.insert(workspace->identifier(), workspace);
    if (changed) {
        setHasWorkspaces(!shown.isEmpty());
        setWorkspaces(shown);
    }
    return fresh;
}

void RemoteUserSession::loadMembers(const QList<RemoteWorkspacePtr>& list, std::function<void()> done)
{
    if (list.isEmpty()) {
        if (done)
            done();
        return;
    }
    auto outstanding = std::make_shared<qsizetype>(list.size());
    const auto weak = weakSelf();
    for (const RemoteWorkspacePtr& workspace : list)
        RemoteApi::send(m_endpoint, "GET", QStringLiteral("workspaces/%1/members").arg(workspace->identifier()),
                        std::nullopt, [weak, workspace, outstanding, done](const RemoteApi::Answer& answer) {
                            auto self = weak.lock();
                            if (!self || self->m_ended)
                                return;
                            if (!answer.error)
                                self->applyMembers(workspace, answer.json.value(QStringLiteral("members")).toArray());
                            else if (answer.status != 404) // one that went meanwhile
                                self->failed(*answer.error);
                            if (--*outstanding == 0 && done && !self->m_ended)
                                done();
                        });
}

void RemoteUserSession::applyMembers(const RemoteWorkspacePtr& workspace, const QJsonArray& members)
{
    VLRWorkspaceUserList users;
    bool same = members.size() == workspace->workspaceUsers().size();
    for (const QJsonValue& value : members) {
        const QJsonObject member = value.toObject();
        auto user = std::make_shared<RemoteWorkspaceUser>(text(member, "id"));
        user->setFirstName(text(member, "firstName"));
        user->setLastName(text(member, "lastName"));
        user->setRole(member.value(QStringLiteral("role")).toInteger());
        user->setAvatar(m_avatars.value(user->userId()));
        if (same) {
            const auto* shown =
                static_cast<const RemoteWorkspaceUser*>(workspace->workspaceUsers().at(users.size()).get());
            same = shown->userId() == user->userId() && shown->firstName() == user->firstName()
                && shown->lastName() == user->lastName() && shown->role() == user->role();
        }
        if (member.value(QStringLiteral("hasAvatar")).toBool())
            wantAvatar(user->userId());
        users.append(user);
    }
    if (!same)
        workspace->setWorkspaceUsers(users);
}

void RemoteUserSession::wantAvatar(const QString& userId)
{
    if (userId.isEmpty() || m_avatarsAsked.contains(userId))
        return;
    m_avatarsAsked.insert(userId);
    const auto weak = weakSelf();
    RemoteApi::fetch(m_endpoint, QStringLiteral("users/%1/avatar").arg(userId),
                     [weak, userId](const RemoteApi::Answer& answer) {
                         const QImage avatar = answer.error ? QImage() : QImage::fromData(answer.body);
                         if (auto self = weak.lock(); self && !self->m_ended && !avatar.isNull())
                             self->avatarArrived(userId, avatar);
                     });
}

void RemoteUserSession::avatarArrived(const QString& userId, const QImage& avatar)
{
    m_avatars.insert(userId, avatar);
    if (userId == userID())
        if (auto* own = dynamic_cast<LocalUser*>(user().get()))
            own->setAvatar(avatar);
    for (const VLRWorkspacePtr& workspace : workspaces())
        for (const VLRWorkspaceUserPtr& member : workspace->workspaceUsers())
            if (auto* remote = static_cast<RemoteWorkspaceUser*>(member.get()); remote->userId() == userId)
                remote->setAvatar(avatar);
}

void RemoteUserSession::refresh(bool allMembers)
{
    if (m_ended)
        return;
    if (m_refreshing) {
        m_refreshAgain = true;
        m_refreshAllMembers = m_refreshAllMembers || allMembers;
        return;
    }
    m_refreshing = true;
    if (!syncingWorkspaces())
        setSyncingWorkspaces(true);
    // What arrives from here on waits for the next round.
    const qsizetype announceable = m_pending.size();
    const auto weak = weakSelf();
    RemoteApi::send(m_endpoint, "GET", QStringLiteral("workspaces"), std::nullopt,
                    [weak, allMembers, announceable](const RemoteApi::Answer& answer) {
                        auto self = weak.lock();
                        if (!self || self->m_ended)
                            return;
                        if (answer.error) {
                            self->failed(*answer.error);
                            return self->refreshed(announceable);
                        }
                        const QList<RemoteWorkspacePtr> fresh =
                            self->applyWorkspaces(answer.json.value(QStringLiteral("workspaces")).toArray());
                        QList<RemoteWorkspacePtr> all;
                        for (const VLRWorkspacePtr& workspace : self->workspaces())
                            all.append(std::static_pointer_cast<RemoteWorkspace>(workspace));
                        self->loadMembers(allMembers ? all : fresh, [weak, announceable] {
                            if (auto self = weak.lock())
                                self->refreshed(announceable);
                        });
                    });
}

void RemoteUserSession::refreshed(qsizetype announceable)
{
    if (m_ended)
        return;
    m_refreshing = false;
    announcePending(announceable);
    if (m_refreshAgain) {
        const bool allMembers = m_refreshAllMembers;
        m_refreshAgain = m_refreshAllMembers = false;
        return refresh(allMembers);
    }
    if (syncingWorkspaces())
        setSyncingWorkspaces(false);
}

void RemoteUserSession::openMarketplace()
{
    const auto weak = weakSelf();
    SessionMarketplace::Hooks hooks;
    hooks.installersChanged = [weak](const VLRInstallerList& installers) {
        if (auto self = weak.lock())
            self->setInstallers(installers);
    };
    // hasPurchases is read when purchases change: it is set first.
    hooks.purchasesChanged = [weak](const VLRPurchaseList& purchases) {
        if (auto self = weak.lock()) {
            self->setHasPurchases(!purchases.isEmpty());
            self->setPurchases(purchases);
        }
    };
    m_market = std::make_shared<SessionMarketplace>(std::make_shared<ServerMarketSource>(m_endpoint), userID(), hooks);
    setUpdater(m_market->updater());
    m_market->refresh();
}

void RemoteUserSession::startStream()
{
    EventStream::Handlers handlers;
    handlers.event = [this](const EventStream::Event& event) { eventArrived(event); };
    handlers.reachabilityChanged = [this](bool up) {
        if (!up) {
            m_streamWasDown = true;
            return;
        }
        // Members and workspaces may have changed while the stream was down.
        if (std::exchange(m_streamWasDown, false))
            refresh(true);
    };
    handlers.refused = [this](const vlr::Error& error) { failed(error); };
    m_stream = std::make_unique<EventStream>(m_endpoint, m_position.load(), handlers);
    m_stream->start();
}

void RemoteUserSession::eventArrived(const EventStream::Event& event)
{
    if (m_ended)
        return;
    if (event.kind == "catalog")
        m_market->refresh();
    if (event.kind == "password") {
        // The server ended every session of the account; the position is
        // kept first, so that the next session is not told again.
        if (!m_pending.isEmpty())
            announcePending(m_pending.size());
        rememberPosition();
        qCInfo(lcRemote, "The password of %s changed elsewhere", qUtf8Printable(user()->email()));
        end();
        if (delegate())
            delegate()->passwordChanged();
        return;
    }
    if (event.kind == "avatar") {
        // Somebody's picture changed: asked for again, it replaces the one shown.
        const QString person = text(event.data, "userID");
        m_avatarsAsked.remove(person);
        rememberPosition();
        return wantAvatar(person);
    }
    if (event.kind == "members") {
        // One's own joining or leaving changes the list of workspaces;
        // somebody else's, the members of a workspace already shown.
        const RemoteWorkspacePtr shown = m_byId.value(text(event.data, "workspace"));
        rememberPosition();
        if (shown && text(event.data, "userID") != userID())
            return loadMembers({shown}, {});
        return refresh(false);
    }
    queueRevisionDownload(event);
    if (event.kind != "publication")
        return rememberPosition();
    m_pending.append(event);
    refresh(!m_byId.contains(text(event.data, "workspace")));
}

void RemoteUserSession::announcePending(qsizetype count)
{
    count = std::min(count, m_pending.size());
    const QList<EventStream::Event> ready = m_pending.first(count);
    m_pending.remove(0, count);
    // One call per workspace, with its publications in the order they came.
    QStringList order;
    QHash<QString, VLRPublicationList> byWorkspace;
    for (const EventStream::Event& event : ready) {
        const QString workspaceId = text(event.data, "workspace");
        auto publication = std::make_shared<LocalPublication>();
        publication->setUserID(text(event.data, "userID"));
        publication->setUserFirstName(text(event.data, "userFirstName"));
        publication->setUserEmail(text(event.data, "userEmail"));
        publication->setProjectName(text(event.data.value(QStringLiteral("revision")).toObject(), "fileName"));
        publication->setText(text(event.data, "text"));
        if (!byWorkspace.contains(workspaceId))
            order.append(workspaceId);
        byWorkspace[workspaceId].append(publication);
    }
    for (const QString& workspaceId : std::as_const(order)) {
        const RemoteWorkspacePtr workspace = m_byId.value(workspaceId);
        if (!workspace)
            qCInfo(lcRemote, "A publication of a workspace that is no longer listed was skipped");
        else if (delegate() && !m_ended)
            delegate()->workspace(workspace, byWorkspace.value(workspaceId));
    }
    rememberPosition();
}

void RemoteUserSession::rememberPosition()
{
    // Kept only once everything up to there was told.
    if (m_pending.isEmpty() && m_stream && m_stream->lastEventId() >= 0)
        m_position.save(m_stream->lastEventId());
}

bool RemoteUserSession::isReachable() const
{
    return m_stream && m_stream->isUp();
}

void RemoteUserSession::failed(const vlr::Error& error)
{
    if (m_ended)
        return;
    if (!RemoteError::isSignedOut(error)) {
        qCInfo(lcRemote, "A request failed: %s", qUtf8Printable(error.localizedDescription));
        return;
    }
    qCInfo(lcRemote, "The server ended the session: %s", qUtf8Printable(error.localizedDescription));
    end();
    if (!delegate())
        return;
    if (error.code == RemoteError::TokenExpired)
        delegate()->clientKeyExpired();
    else
        delegate()->downstreamProxyUnavailable();
}

void RemoteUserSession::end()
{
    if (m_ended)
        return;
    m_ended = true;
    m_registration.reset();
    if (m_stream)
        m_stream->stop();
    m_market->end();
    stopTransfers();
    if (syncingLists())
        setSyncingLists(false);
    if (syncingWorkspaces())
        setSyncingWorkspaces(false);
}

bool RemoteUserSession::sortWorkspaces(qint64 order)
{
    // The list is always kept newest first, the one order the server has.
    return order == NewestFirstSortOrder;
}

void RemoteUserSession::logoutWithCompletionHandler(const VLRErrorHandler& handler)
{
    // Signing out never waits for the server: the token is dropped there when
    // it can be reached, and the session ends here in any case.
    if (!m_ended) {
        end();
        PendingSignOuts::add(RemoteApi::send(m_endpoint, "DELETE", QStringLiteral("sessions/current"), std::nullopt,
                                             [](const RemoteApi::Answer& answer) {
                                                 if (answer.error)
                                                     qCInfo(lcRemote, "The server did not hear of the sign-out: %s",
                                                            qUtf8Printable(answer.error->localizedDescription));
                                             }));
    }
    if (handler)
        MainThread::post([handler] { handler(std::nullopt); });
}

void RemoteUserSession::getDownloadCacheSizeWithCompletionHandler(const VLRSizeHandler& handler)
{
    if (handler)
        MainThread::post([handler, size = m_downloadCacheSize] { handler(size, std::nullopt); });
}

void RemoteUserSession::setDownloadCacheSize(qint64 bytes)
{
    if (bytes >= 0)
        m_downloadCacheSize = bytes;
}

VLRWorkspacePtr RemoteUserSession::workspaceFromID(const QString& identifier) const
{
    return m_byId.value(identifier);
}

void RemoteUserSession::createNewWorkspaceWithName(const QString& name, const VLRWorkspaceHandler& completionHandler)
{
    auto answer = [completionHandler](const VLRWorkspacePtr& workspace, const vlr::OptionalError& error) {
        if (completionHandler)
            completionHandler(workspace, error);
    };
    if (m_ended) {
        const vlr::Error error = RemoteError::make(RemoteError::NotSignedIn);
        return MainThread::post([answer, error] { answer(nullptr, error); });
    }
    const auto weak = weakSelf();
    RemoteApi::send(
        m_endpoint, "POST", QStringLiteral("workspaces"), QJsonObject{{QStringLiteral("name"), name}},
        [weak, answer](const RemoteApi::Answer& reply) {
            auto self = weak.lock();
            const QString id = text(reply.json, "id");
            if (reply.error || id.isEmpty() || !self || self->m_ended) {
                if (self && reply.error)
                    self->failed(*reply.error);
                return answer(nullptr, reply.error ? *reply.error : RemoteError::make(RemoteError::NotSignedIn));
            }
            auto workspace = std::make_shared<RemoteWorkspace>(id, self->m_endpoint);
            workspace->setName(text(reply.json, "name"));
            workspace->setUpdatedAt(QDateTime::fromString(text(reply.json, "updatedAt"), Qt::ISODateWithMs));
            self->m_byId.insert(id, workspace);
            VLRWorkspaceList list = self->workspaces();
            list.prepend(workspace);
            self->setHasWorkspaces(true);
            self->setWorkspaces(list);
            self->loadMembers({workspace}, {});
            answer(workspace, std::nullopt);
        });
}

void RemoteUserSession::publishText(const QString& text, const QString& intoWorkspaceWithID,
                                    const VLRTextHandler& completionHandler)
{
    if (m_ended)
        return answerLater(completionHandler, RemoteError::make(RemoteError::NotSignedIn));
    const auto weak = weakSelf();
    RemoteApi::send(m_endpoint, "POST", QStringLiteral("workspaces/%1/publications").arg(intoWorkspaceWithID),
                    QJsonObject{{QStringLiteral("text"), text}},
                    [weak, completionHandler](const RemoteApi::Answer& answer) {
                        if (auto self = weak.lock(); self && answer.error)
                            self->failed(*answer.error);
                        if (completionHandler)
                            completionHandler(answer.error ? QString() : ::text(answer.json, "id"), answer.error);
                    });
}

void RemoteUserSession::createNewInstallerWithName(
    const QString&, const QVariant&, const QVariant&, const QVariant&, const QVariant&, const QList<QUrl>&, bool,
    const QVariant&, const QUrl&,
    const std::function<void(const VLRInstallerPtr&, const vlr::OptionalError&)>& completionHandler)
{
    if (completionHandler)
        MainThread::post([completionHandler] {
            completionHandler(nullptr,
                              RemoteError::make(RemoteError::NotAvailable, QStringLiteral("Publishing installers")));
        });
}

void RemoteUserSession::uploadAndPublishNewInstaller(const QUrl&, const QString&, const QVariantMap&,
                                                     vlr::OptionalError* error)
{
    if (error)
        *error = RemoteError::make(RemoteError::NotAvailable, QStringLiteral("Publishing installers"));
}
