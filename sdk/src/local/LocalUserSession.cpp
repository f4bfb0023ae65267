#include "sdk/local/LocalUserSession.h"

#include "sdk/accounts/AccountsLog.h"
#include "sdk/accounts/SessionRegistry.h"
#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/base/MainThread.h"
#include "sdk/base/ServiceError.h"
#include "sdk/catalogue/SessionWatcher.h"
#include "sdk/marketplace/DatabaseMarketSource.h"
#include "sdk/marketplace/SessionMarketplace.h"
#include "sdk/transfers/DownloadCache.h"
#include "sdk/transfers/LocalTransferRunner.h"
#include "sdk/transfers/TransferLeftovers.h"
#include "sdk/workspaces/LocalProject.h"

#include "sdk/accounts/LocalUser.h"
#include "sdk/workspaces/LocalPublication.h"

#include "service/VLRPublication.h"
#include "service/VLRUser.h"
#include "service/VLRUserSessionDelegate.h"

namespace {

VLRUserPtr userRecord(const AccountStore::Account& account)
{
    auto user = std::make_shared<LocalUser>();
    user->setFirstName(account.firstName);
    user->setLastName(account.lastName);
    user->setEmail(account.email);
    user->setNeedsConfirmation(account.needsConfirmation);
    if (!account.avatar.isEmpty())
        user->setAvatar(QImage::fromData(account.avatar));
    return user;
}

bool sameShownAccount(const AccountStore::Account& a, const AccountStore::Account& b)
{
    return a.firstName == b.firstName && a.lastName == b.lastName && a.email == b.email
        && a.needsConfirmation == b.needsConfirmation && a.avatar == b.avatar;
}

} // namespace

std::shared_ptr<LocalUserSession> LocalUserSession::create(const Start& start)
{
    std::shared_ptr<LocalUserSession> session(new LocalUserSession(start));
    session->setUploader(std::make_shared<TransferQueue>(LocalTransferRunner::factory(start.databaseFolder), *session));
    session->setDownloader(
        std::make_shared<TransferQueue>(LocalTransferRunner::factory(start.databaseFolder), *session));
    session->openMarketplace();
    const std::weak_ptr<LocalUserSession> weak = session;
    session->m_registration = SessionRegistry::add([weak] {
        if (auto self = weak.lock())
            self->end();
    });
    session->loadLists();
    return session;
}

LocalUserSession::LocalUserSession(const Start& start)
    : QueueingUserSession(start.databaseFolder)
    , m_account(start.account)
    , m_lastPublicationSeq(start.lastPublicationSeq)
{
    setUserID(start.account.id);
    setUser(userRecord(start.account));
    setHasWorkspaces(start.hasWorkspaces);
    setHasPurchases(false);
    setSyncingLists(true);
}

LocalUserSession::~LocalUserSession()
{
    end();
}

std::weak_ptr<LocalUserSession> LocalUserSession::weakSelf()
{
    return std::static_pointer_cast<LocalUserSession>(shared_from_this());
}

void LocalUserSession::loadLists()
{
    const auto weak = weakSelf();
    const QString userId = userID();
    const qint64 afterSeq = m_lastPublicationSeq;
    auto fail = [weak](const QString& failure) {
        qCWarning(lcAccounts, "Loading the session's lists failed: %s", qUtf8Printable(failure));
        MainThread::post([weak] {
            if (auto self = weak.lock())
                self->serviceWasLost();
        });
    };
    onService(
        [weak, userId, afterSeq, fail](Database& database) {
            // What killed or failed transfers left goes before anything
            // resumes; a failed one starts afresh when it is retried.
            TransferLeftovers::sweep(database);
            Loaded loaded;
            QString failure;
            const auto catalog = CatalogSnapshot::read(database, userId, afterSeq, &failure);
            const auto transfers = SavedTransfers::load(database, userId);
            if (!catalog || !transfers)
                return fail(catalog ? database.errorMessage() : failure);
            loaded.catalog = *catalog;
            loaded.transfers = *transfers;
            MainThread::post([weak, loaded] {
                if (auto self = weak.lock())
                    self->listsLoaded(loaded);
            });
        },
        fail);
}

void LocalUserSession::listsLoaded(const Loaded& loaded)
{
    if (m_ended)
        return;
    applyCatalog(loaded.catalog);
    const auto uploads = std::static_pointer_cast<TransferQueue>(uploader());
    const auto downloads = std::static_pointer_cast<TransferQueue>(downloader());
    setCompletedTransfers(loaded.transfers.finished(uploads, downloads));
    loaded.transfers.resume(uploads, downloads);
    setSyncingLists(false);
    startWatching(loaded.catalog.catalogVersion);
}

void LocalUserSession::openMarketplace()
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
    hooks.catalogueWritten = [weak] {
        if (auto self = weak.lock(); self && self->m_watcher)
            self->m_watcher->poke();
    };
    m_market = std::make_shared<SessionMarketplace>(std::make_shared<DatabaseMarketSource>(m_databaseFolder, userID()),
                                                    userID(), hooks);
    setUpdater(m_market->updater());
}

void LocalUserSession::sessionWasBound()
{
    if (!m_ended)
        m_market->announceGroups();
}

void LocalUserSession::startWatching(qint64 catalogVersion)
{
    const auto weak = weakSelf();
    SessionWatcher::Handlers handlers;
    // While a change that the watcher saw is read, the session counts as
    // syncing its workspaces.
    handlers.catalogChanging = [weak] {
        MainThread::post([weak] {
            if (auto self = weak.lock(); self && !self->m_ended && !self->syncingWorkspaces())
                self->setSyncingWorkspaces(true);
        });
    };
    handlers.catalogChanged = [weak](const std::optional<CatalogSnapshot>& snapshot) {
        MainThread::post([weak, snapshot] {
            auto self = weak.lock();
            if (!self || self->m_ended)
                return;
            if (snapshot)
                self->applyCatalog(*snapshot);
            if (self->syncingWorkspaces())
                self->setSyncingWorkspaces(false);
        });
    };
    handlers.passwordChanged = [weak] {
        MainThread::post([weak] {
            if (auto self = weak.lock())
                self->passwordWasChanged();
        });
    };
    handlers.serviceLost = [weak] {
        MainThread::post([weak] {
            if (auto self = weak.lock())
                self->serviceWasLost();
        });
    };
    m_watcher = std::make_unique<SessionWatcher>(m_databaseFolder, userID(), m_account.passwordVersion, catalogVersion,
                                                 m_lastPublicationSeq, handlers);
}

void LocalUserSession::applyCatalog(const CatalogSnapshot& snapshot)
{
    if (!sameShownAccount(snapshot.account, m_account))
        setUser(userRecord(snapshot.account));
    m_account = snapshot.account;
    if (m_directory.apply(snapshot.workspaces)) {
        setHasWorkspaces(!snapshot.workspaces.isEmpty());
        setWorkspaces(m_directory.list());
    }
    bool projectsChanged = snapshot.assets.size() != projects().size();
    VLRObjectList list;
    list.reserve(snapshot.assets.size());
    for (qsizetype i = 0; i < snapshot.assets.size(); ++i) {
        const WorkspaceStore::Asset& asset = snapshot.assets.at(i);
        const auto* shown = projectsChanged ? nullptr : static_cast<const LocalProject*>(projects().at(i).get());
        if (shown && (shown->identifier() != asset.id || shown->latestRevision() != asset.latestRevision))
            projectsChanged = true;
        list.append(std::make_shared<LocalProject>(asset));
    }
    if (projectsChanged)
        setProjects(list);
    m_market->apply(snapshot.market);
    m_lastPublicationSeq = std::max(m_lastPublicationSeq, snapshot.lastPublicationSeq);
    announce(snapshot.publications);
    queueRevisionDownloads(snapshot.publications);
}

void LocalUserSession::announce(const QList<WorkspaceStore::Publication>& publications)
{
    // One call per workspace, with its publications in the order they came.
    QStringList order;
    QHash<QString, VLRPublicationList> byWorkspace;
    for (const WorkspaceStore::Publication& publication : publications) {
        auto record = std::make_shared<LocalPublication>();
        record->setUserID(publication.userId);
        record->setUserFirstName(publication.userFirstName);
        record->setUserEmail(publication.userEmail);
        record->setProjectName(publication.projectName);
        record->setText(publication.text);
        if (!byWorkspace.contains(publication.workspaceId))
            order.append(publication.workspaceId);
        byWorkspace[publication.workspaceId].append(record);
    }
    for (const QString& workspaceId : order) {
        const VLRWorkspacePtr workspace = m_directory.find(workspaceId);
        if (workspace && delegate() && !m_ended)
            delegate()->workspace(workspace, byWorkspace.value(workspaceId));
    }
}

void LocalUserSession::passwordWasChanged()
{
    if (m_ended)
        return;
    qCInfo(lcAccounts, "The password of %s changed elsewhere", qUtf8Printable(m_account.email));
    end();
    if (delegate())
        delegate()->passwordChanged();
}

void LocalUserSession::serviceWasLost()
{
    if (m_ended)
        return;
    qCWarning(lcAccounts, "The session of %s lost its database", qUtf8Printable(m_account.email));
    end();
    if (syncingLists())
        setSyncingLists(false);
    if (delegate())
        delegate()->downstreamProxyUnavailable();
}

void LocalUserSession::end()
{
    if (m_ended)
        return;
    m_ended = true;
    m_registration.reset();
    if (m_market)
        m_market->end();
    // The watcher ends on the service thread's way out.
    stopTransfers([watcher = std::shared_ptr<SessionWatcher>(std::move(m_watcher))] {
        if (watcher)
            watcher->stop();
    });
}

bool LocalUserSession::sortWorkspaces(qint64 order)
{
    // The list is always kept newest first, the one order the service has.
    return order == NewestFirstSortOrder;
}

void LocalUserSession::logoutWithCompletionHandler(const VLRErrorHandler& handler)
{
    end();
    qCInfo(lcAccounts, "Signed out: %s", qUtf8Printable(m_account.email));
    if (handler)
        MainThread::post([handler] { handler(std::nullopt); });
}

void LocalUserSession::getDownloadCacheSizeWithCompletionHandler(const VLRSizeHandler& handler)
{
    if (!handler)
        return;
    const qint64 size = m_account.downloadCacheSize;
    const vlr::OptionalError error =
        m_ended ? vlr::OptionalError(ServiceError::make(ServiceError::SignedOut)) : std::nullopt;
    MainThread::post([handler, size, error] { handler(error ? 0 : size, error); });
}

void LocalUserSession::setDownloadCacheSize(qint64 bytes)
{
    if (m_ended || bytes < 0)
        return;
    m_account.downloadCacheSize = bytes;
    const QString userId = userID();
    const QString folder = m_databaseFolder;
    onService([userId, bytes, folder](Database& database) {
        if (!AccountStore(database).setDownloadCacheSize(userId, bytes))
            qCWarning(lcAccounts, "The download cache's size could not be saved: %s",
                      qUtf8Printable(database.errorMessage()));
        DownloadCache(database, folder).trim(userId, bytes);
    });
}

VLRWorkspacePtr LocalUserSession::workspaceFromID(const QString& identifier) const
{
    return m_directory.find(identifier);
}

void LocalUserSession::createNewWorkspaceWithName(const QString& name, const VLRWorkspaceHandler& completionHandler)
{
    auto answer = [completionHandler](const VLRWorkspacePtr& workspace, const vlr::OptionalError& error) {
        if (completionHandler)
            completionHandler(workspace, error);
    };
    const QString trimmed = name.trimmed();
    vlr::OptionalError refusal;
    if (m_ended)
        refusal = ServiceError::make(ServiceError::SignedOut);
    else if (trimmed.isEmpty())
        refusal = ServiceError::make(ServiceError::InvalidName, name);
    else if (m_account.needsConfirmation)
        refusal = ServiceError::make(ServiceError::NeedsConfirmation);
    if (refusal) {
        MainThread::post([answer, refusal] { answer(nullptr, refusal); });
        return;
    }
    const auto weak = weakSelf();
    const QString userId = userID();
    onService(
        [weak, userId, trimmed, answer](Database& database) {
            WorkspaceStore workspaces(database);
            const QString id = workspaces.create(trimmed, userId, Clock::nowMs());
            const auto created = id.isNull() ? std::nullopt : workspaces.workspace(id);
            const vlr::OptionalError error = created
                ? std::nullopt
                : vlr::OptionalError(ServiceError::make(ServiceError::DatabaseFailure, database.errorMessage()));
            MainThread::post([weak, created, error, answer] {
                auto self = weak.lock();
                if (!self || self->m_ended || !created)
                    return answer(nullptr, error ? error : ServiceError::make(ServiceError::SignedOut));
                const auto workspace = self->m_directory.prepend(*created);
                self->setHasWorkspaces(true);
                self->setWorkspaces(self->m_directory.list());
                answer(workspace, std::nullopt);
            });
        },
        [answer](const QString& failure) {
            MainThread::post(
                [answer, failure] { answer(nullptr, ServiceError::make(ServiceError::DatabaseFailure, failure)); });
        });
}

void LocalUserSession::publishText(const QString& text, const QString& intoWorkspaceWithID,
                                   const VLRTextHandler& completionHandler)
{
    auto answer = [completionHandler](const QString& identifier, const vlr::OptionalError& error) {
        if (completionHandler)
            completionHandler(identifier, error);
    };
    vlr::OptionalError refusal;
    if (m_ended)
        refusal = ServiceError::make(ServiceError::SignedOut);
    else if (m_account.needsConfirmation)
        refusal = ServiceError::make(ServiceError::NeedsConfirmation);
    else if (!m_directory.find(intoWorkspaceWithID))
        refusal = ServiceError::make(ServiceError::WorkspaceNotFound);
    if (refusal) {
        MainThread::post([answer, refusal] { answer(QString(), refusal); });
        return;
    }
    const QString userId = userID();
    const auto weak = weakSelf();
    onService(
        [weak, userId, text, intoWorkspaceWithID, answer](Database& database) {
            WorkspaceStore workspaces(database);
            vlr::OptionalError error;
            qint64 seq = 0;
            if (!workspaces.isMember(intoWorkspaceWithID, userId))
                error = ServiceError::make(ServiceError::NotAMember);
            else if ((seq = workspaces.publishText(intoWorkspaceWithID, userId, text)) == 0)
                error = ServiceError::make(ServiceError::DatabaseFailure, database.errorMessage());
            MainThread::post([weak, seq, error, answer] {
                if (auto self = weak.lock(); self && self->m_watcher)
                    self->m_watcher->poke();
                answer(error ? QString() : QString::number(seq), error);
            });
        },
        [answer](const QString& failure) {
            MainThread::post(
                [answer, failure] { answer(QString(), ServiceError::make(ServiceError::DatabaseFailure, failure)); });
        });
}

void LocalUserSession::createNewInstallerWithName(
    const QString& name, const QVariant& type, const QVariant& description, const QVariant& platform,
    const QVariant& packageIdentifiers, const QList<QUrl>& fileURLs, bool silentInstall, const QVariant& productIDs,
    const QUrl& imageURL,
    const std::function<void(const VLRInstallerPtr&, const vlr::OptionalError&)>& completionHandler)
{
    m_market->saveInstaller(QString(), name, type, description, platform, packageIdentifiers, fileURLs, silentInstall,
                            productIDs, imageURL, completionHandler);
}

void LocalUserSession::uploadAndPublishNewInstaller(const QUrl& fileURL, const QString& installerID,
                                                    const QVariantMap& installerVersionInfo, vlr::OptionalError* error)
{
    m_market->publishRevision(fileURL, installerID, installerVersionInfo, error);
}
