#pragma once

#include "fakes/FakeCallLog.h"
#include "fakes/FakeObservationJournal.h"
#include "fakes/FakePending.h"
#include "fakes/FakeTransferQueue.h"
#include "fakes/FakeUser.h"
#include "service/VLRInstallerUpdater.h"
#include "service/VLRUser.h"
#include "service/VLRUserSession.h"

#include <memory>

class FakeInstallerUpdater : public Journaled<VLRInstallerUpdater>
{
public:
    using VLRInstallerUpdater::overallOperationsDidChange;
    using VLRInstallerUpdater::setCurrentInstall;
    using VLRInstallerUpdater::setDownloadOperations;
    using VLRInstallerUpdater::setInstallerUpdates;
    using VLRInstallerUpdater::setNeverInstalled;
    using VLRInstallerUpdater::setNotInstalled;
};

// A session whose every property a test sets through the contract's setters,
// whose every call is logged, and whose completion handlers wait until the
// test completes them.
class FakeUserSession : public Journaled<VLRUserSession>
{
public:
    // A session with a user, both queues and an updater, all sharing one
    // observation journal.
    static std::shared_ptr<FakeUserSession> make(const QString& email = QStringLiteral("ada@example.com"));

    FakeObservationJournal observations;
    using VLRUserSession::setCompletedTransfers;
    using VLRUserSession::setDownloader;
    using VLRUserSession::setHasPurchases;
    using VLRUserSession::setHasWorkspaces;
    using VLRUserSession::setInstallers;
    using VLRUserSession::setProjects;
    using VLRUserSession::setPurchases;
    using VLRUserSession::setSyncingLists;
    using VLRUserSession::setSyncingWorkspaces;
    using VLRUserSession::setTransfersPaused;
    using VLRUserSession::setUpdater;
    using VLRUserSession::setUploader;
    using VLRUserSession::setUser;
    using VLRUserSession::setUserID;
    using VLRUserSession::setWorkspaces;

    FakeCallLog log;

    FakePending<VLRErrorHandler> logoutHandlers;
    FakePending<VLRSizeHandler> cacheSizeHandlers;
    FakePending<VLRTransferHandler> downloadHandlers;
    FakePending<VLRWorkspaceHandler> createWorkspaceHandlers;
    FakePending<VLRTextHandler> publishTextHandlers;
    FakePending<std::function<void(const VLRInstallerPtr&, const vlr::OptionalError&)>> createInstallerHandlers;
    // What the synchronous calls answer in their error out-parameter.
    vlr::OptionalError uploadError;
    vlr::OptionalError uploadInstallerError;

    std::shared_ptr<FakeUser> fakeUser() const;
    std::shared_ptr<FakeTransferQueue> fakeUploader() const;
    std::shared_ptr<FakeTransferQueue> fakeDownloader() const;
    std::shared_ptr<FakeInstallerUpdater> fakeUpdater() const;

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
};
