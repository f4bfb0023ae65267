#include "fakes/FakeUserSession.h"

#include "service/VLRWorkspace.h"

std::shared_ptr<FakeUserSession> FakeUserSession::make(const QString& email)
{
    auto session = std::make_shared<FakeUserSession>();
    session->journalName = QStringLiteral("session");
    session->journal = &session->observations;

    auto user = std::make_shared<FakeUser>();
    user->setEmail(email);
    user->setFirstName(QStringLiteral("Ada"));
    user->setLastName(QStringLiteral("Lovelace"));
    session->setUser(user);
    session->setUserID(QStringLiteral("user-1"));

    auto uploader = std::make_shared<FakeTransferQueue>();
    uploader->journalName = QStringLiteral("uploader");
    uploader->journal = &session->observations;
    session->setUploader(uploader);

    auto downloader = std::make_shared<FakeTransferQueue>();
    downloader->journalName = QStringLiteral("downloader");
    downloader->journal = &session->observations;
    session->setDownloader(downloader);

    auto updater = std::make_shared<FakeInstallerUpdater>();
    updater->journalName = QStringLiteral("updater");
    updater->journal = &session->observations;
    session->setUpdater(updater);
    return session;
}

std::shared_ptr<FakeUser> FakeUserSession::fakeUser() const
{
    return std::static_pointer_cast<FakeUser>(user());
}

std::shared_ptr<FakeTransferQueue> FakeUserSession::fakeUploader() const
{
    return std::static_pointer_cast<FakeTransferQueue>(uploader());
}

std::shared_ptr<FakeTransferQueue> FakeUserSession::fakeDownloader() const
{
    return std::static_pointer_cast<FakeTransferQueue>(downloader());
}

std::shared_ptr<FakeInstallerUpdater> FakeUserSession::fakeUpdater() const
{
    return std::static_pointer_cast<FakeInstallerUpdater>(updater());
}

bool FakeUserSession::sortWorkspaces(qint64 order)
{
    log.record(QStringLiteral("sortWorkspaces"), {order});
    return true;
}

void FakeUserSession::logoutWithCompletionHandler(const VLRErrorHandler& handler)
{
    log.record(QStringLiteral("logoutWithCompletionHandler"), {bool(handler)});
    logoutHandlers.add(handler);
}

void FakeUserSession::getDownloadCacheSizeWithCompletionHandler(const VLRSizeHandler& handler)
{
    log.record(QStringLiteral("getDownloadCacheSizeWithCompletionHandler"));
    cacheSizeHandlers.add(handler);
}

void FakeUserSession::setDownloadCacheSize(qint64 bytes)
{
    log.record(QStringLiteral("setDownloadCacheSize"), {bytes});
}

void FakeUserSession::downloadUrl(const QString& url, const VLRTransferHandler& completionHandler)
{
    log.record(QStringLiteral("downloadUrl"), {url});
    downloadHandlers.add(completionHandler);
}

void FakeUserSession::downloadUrl(const QString& url, const QUrl& toURL, const VLRTransferHandler& completionHandler)
{
    log.record(QStringLiteral("downloadUrlToURL"), {url, toURL});
    downloadHandlers.add(completionHandler);
}

VLRWorkspacePtr FakeUserSession::workspaceFromID(const QString& identifier) const
{
    for (const VLRWorkspacePtr& workspace : workspaces())
        if (workspace->identifier() == identifier)
            return workspace;
    return nullptr;
}

void FakeUserSession::createNewWorkspaceWithName(const QString& name, const VLRWorkspaceHandler& completionHandler)
{
    log.record(QStringLiteral("createNewWorkspaceWithName"), {name});
    createWorkspaceHandlers.add(completionHandler);
}

void FakeUserSession::publishText(const QString& text, const QString& intoWorkspaceWithID,
                                  const VLRTextHandler& completionHandler)
{
    log.record(QStringLiteral("publishText"), {text, intoWorkspaceWithID});
    publishTextHandlers.add(completionHandler);
}

void FakeUserSession::uploadAndPublishNewRevision(const QUrl& fileURL, const QString& workspaceIdentifier, bool publish,
                                                  const QString& publicationText, vlr::OptionalError* error)
{
    log.record(QStringLiteral("uploadAndPublishNewRevision"), {fileURL, workspaceIdentifier, publish, publicationText});
    if (error)
        *error = uploadError;
}

void FakeUserSession::createNewInstallerWithName(
    const QString& name, const QVariant& type, const QVariant& description, const QVariant& platform,
    const QVariant& packageIdentifiers, const QList<QUrl>& fileURLs, bool silentInstall, const QVariant& productIDs,
    const QUrl& imageURL,
    const std::function<void(const VLRInstallerPtr&, const vlr::OptionalError&)>& completionHandler)
{
    QVariantList urls;
    for (const QUrl& url : fileURLs)
        urls.append(url);
    log.record(QStringLiteral("createNewInstallerWithName"),
               {name, type, description, platform, packageIdentifiers, urls, silentInstall, productIDs, imageURL});
    createInstallerHandlers.add(completionHandler);
}

void FakeUserSession::uploadAndPublishNewInstaller(const QUrl& fileURL, const QString& installerID,
                                                   const QVariantMap& installerVersionInfo, vlr::OptionalError* error)
{
    log.record(QStringLiteral("uploadAndPublishNewInstaller"), {fileURL, installerID, installerVersionInfo});
    if (error)
        *error = uploadInstallerError;
}

void FakeUserSession::pauseAllTransfers(bool pause)
{
    log.record(QStringLiteral("pauseAllTransfers"), {pause});
}

void FakeUserSession::clearCompletedTransfers()
{
    log.record(QStringLiteral("clearCompletedTransfers"));
}
