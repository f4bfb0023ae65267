// Observed changes become calls on the pages, on the status indication and on
// notifications. Values are read afresh from the session; the change record
// is consulted only for the current transfers' "finished" and "error".

#include "session/MainViewController.h"

#include "app/VLRText.h"
#include "app/VLRUserDefaultsKeys.h"
#include "app/VLRUserNotificationKeys.h"
#include "platform/VLRDesktopServices.h"
#include "platform/VLRFileManager.h"
#include "platform/VLRNotificationScheduling.h"
#include "platform/VLRUserDefaults.h"
#include "service/VLRException.h"
#include "service/VLRInstallerUpdater.h"
#include "service/VLRTransferQueue.h"
#include "service/VLRTransferReporting.h"
#include "service/VLRUserSession.h"
#include "session/MainViewController+Observations.h"

#include <QCoreApplication>
#include <QThread>

using namespace MainViewControllerObservations;

namespace {

bool onMainThread()
{
    const QCoreApplication* app = QCoreApplication::instance();
    return !app || QThread::currentThread() == app->thread();
}

QString lastPathComponent(const QUrl& url)
{
    return VLRFileManager::lastPathComponent(url.path());
}

} // namespace

void MainViewController::observeValueForKeyPath(const QString& keyPath, VLRObject* object,
                                                const vlr::KeyValueChange& change, void* context)
{
    if (!onMainThread()) {
        throw vlr::Exception(QStringLiteral("KVO on background thread"),
                             QStringLiteral("MainViewController's implementation of observeValueForKeyPath was "
                                            "called on a background thread."),
                             {});
    }
    Q_UNUSED(object);

    struct Route
    {
        void* context;
        ChangeHandler handle;
    };
    // Tokens are compared by identity; each has one handler, and a change
    // under a token that is not here is not ours.
    static const Route routes[] = {
        {UserContext, &MainViewController::userDidChange},
        {ProjectsContext, &MainViewController::workspacesDidChange},
        {WorkspacesContext, &MainViewController::workspacesDidChange},
        {CurrentDownloadContext, &MainViewController::handleCurrentDownloadChange},
        {CurrentUploadContext, &MainViewController::handleCurrentUploadChange},
        {UploaderTransfersContext, &MainViewController::uploadsDidChange},
        {DownloaderTransfersContext, &MainViewController::downloadsDidChange},
        {CompletedTransfersContext, &MainViewController::completedTransfersDidChange},
        {UploaderThroughputContext, &MainViewController::uploadThroughputDidChange},
        {DownloaderThroughputContext, &MainViewController::downloadThroughputDidChange},
        {UploaderTimeRemainingContext, &MainViewController::uploadTimeRemainingDidChange},
        {UploaderTimeRemainingInvalidContext, &MainViewController::uploadTimeRemainingDidChange},
        {DownloaderTimeRemainingContext, &MainViewController::downloadTimeRemainingDidChange},
        {DownloaderTimeRemainingInvalidContext, &MainViewController::downloadTimeRemainingDidChange},
        {TransfersPausedContext, &MainViewController::transfersPausedDidChange},
        {SyncingListsContext, &MainViewController::syncingListsDidChange},
        {SyncingWorkspacesContext, &MainViewController::activityDidChange},
        {UploaderCurrentTransferContext, &MainViewController::activityDidChange},
        {DownloaderCurrentTransferContext, &MainViewController::activityDidChange},
        {OverallOperationsContext, &MainViewController::activityDidChange},
        {InstallersContext, &MainViewController::installersDidChange},
        {InstallerUpdatesContext, &MainViewController::installerUpdatesDidChange},
        {NeverInstalledContext, &MainViewController::neverInstalledDidChange},
        {NotInstalledContext, &MainViewController::notInstalledDidChange},
        {PurchasesContext, &MainViewController::purchasesDidChange},
    };
    for (const Route& route : routes) {
        if (route.context == context) {
            (this->*route.handle)(keyPath, change);
            return;
        }
    }
}

void MainViewController::userDidChange(const QString&, const vlr::KeyValueChange&)
{
    if (m_parts.preferencesViewController)
        m_parts.preferencesViewController->updateWithUser(m_userSession ? m_userSession->user() : nullptr);
    updateStateOfPages(false);
}

void MainViewController::workspacesDidChange(const QString&, const vlr::KeyValueChange&)
{
    const VLRWorkspaceList workspaces = m_userSession ? m_userSession->workspaces() : VLRWorkspaceList();
    if (m_parts.workspacesViewController)
        m_parts.workspacesViewController->updateWorkspaces(workspaces);
    if (m_parts.fileDropViewController)
        m_parts.fileDropViewController->updateWorkspaces(workspaces);
}

void MainViewController::uploadsDidChange(const QString&, const vlr::KeyValueChange&)
{
    const VLRUserSessionPtr session = m_userSession;
    if (m_parts.transfersViewController)
        m_parts.transfersViewController->setUploads(session && session->uploader() ? session->uploader()->transfers()
                                                                                   : VLRTransferList());
    updateStatusIndication(session);
}

void MainViewController::downloadsDidChange(const QString&, const vlr::KeyValueChange&)
{
    const VLRUserSessionPtr session = m_userSession;
    if (m_parts.transfersViewController)
        m_parts.transfersViewController->setDownloads(
            session && session->downloader() ? session->downloader()->transfers() : VLRTransferList());
    updateStatusIndication(session);
}

void MainViewController::completedTransfersDidChange(const QString&, const vlr::KeyValueChange&)
{
    const VLRUserSessionPtr session = m_userSession;
    if (m_parts.transfersViewController)
        m_parts.transfersViewController->setCompleted(session ? session->completedTransfers() : VLRTransferList());
    updateStatusIndication(session);
}

void MainViewController::uploadThroughputDidChange(const QString&, const vlr::KeyValueChange&)
{
    VLRTransferQueue* uploader = m_userSession ? m_userSession->uploader().get() : nullptr;
    if (m_parts.transfersViewController && uploader)
        m_parts.transfersViewController->updateUploadThroughput(uploader->throughput());
}

void MainViewController::downloadThroughputDidChange(const QString&, const vlr::KeyValueChange&)
{
    VLRTransferQueue* downloader = m_userSession ? m_userSession->downloader().get() : nullptr;
    if (m_parts.transfersViewController && downloader)
        m_parts.transfersViewController->updateDownloadThroughput(downloader->throughput());
}

void MainViewController::uploadTimeRemainingDidChange(const QString&, const vlr::KeyValueChange&)
{
    VLRTransferQueue* uploader = m_userSession ? m_userSession->uploader().get() : nullptr;
    if (m_parts.transfersViewController && uploader)
        m_parts.transfersViewController->updateUploadTimeRemaining(uploader->timeRemaining(),
                                                                   !uploader->timeRemainingInvalid());
}

void MainViewController::downloadTimeRemainingDidChange(const QString&, const vlr::KeyValueChange&)
{
    VLRTransferQueue* downloader = m_userSession ? m_userSession->downloader().get() : nullptr;
    if (m_parts.transfersViewController && downloader)
        m_parts.transfersViewController->updateDownloadTimeRemaining(downloader->timeRemaining(),
                                                                     !downloader->timeRemainingInvalid());
}

void MainViewController::transfersPausedDidChange(const QString&, const vlr::KeyValueChange&)
{
    if (m_parts.transfersViewController && m_userSession)
        m_parts.transfersViewController->setTransfersPaused(m_userSession->transfersPaused());
}

void MainViewController::syncingListsDidChange(const QString&, const vlr::KeyValueChange&)
{
    updateStatusIndication(m_userSession);
    updateStateOfPages(true);
}

void MainViewController::activityDidChange(const QString&, const vlr::KeyValueChange&)
{
    updateStatusIndication(m_userSession);
}

void MainViewController::installersDidChange(const QString&, const vlr::KeyValueChange&)
{
    if (m_parts.marketplaceViewController)
        m_parts.marketplaceViewController->updateInstallers(m_userSession ? m_userSession->installers()
                                                                          : VLRInstallerList());
}

void MainViewController::installerUpdatesDidChange(const QString&, const vlr::KeyValueChange&)
{
    VLRInstallerUpdater* updater = m_userSession ? m_userSession->updater().get() : nullptr;
    if (m_parts.marketplaceViewController)
        m_parts.marketplaceViewController->updateInstallerUpdates(updater ? updater->installerUpdates()
                                                                          : VLRInstallerList());
}

void MainViewController::neverInstalledDidChange(const QString&, const vlr::KeyValueChange&)
{
    VLRInstallerUpdater* updater = m_userSession ? m_userSession->updater().get() : nullptr;
    if (m_parts.marketplaceViewController)
        m_parts.marketplaceViewController->updateNewInstallers(updater ? updater->neverInstalled()
                                                                       : VLRInstallerList());
}

void MainViewController::notInstalledDidChange(const QString&, const vlr::KeyValueChange&)
{
    VLRInstallerUpdater* updater = m_userSession ? m_userSession->updater().get() : nullptr;
    if (m_parts.marketplaceViewController)
        m_parts.marketplaceViewController->updateNotInstalled(updater ? updater->notInstalled() : VLRInstallerList());
}

void MainViewController::purchasesDidChange(const QString&, const vlr::KeyValueChange&)
{
    const VLRUserSessionPtr session = m_userSession;
    showHideMarketplaceTab(session);
    if (m_parts.marketplaceViewController)
        m_parts.marketplaceViewController->updatePurchases(session ? session->purchases() : VLRPurchaseList());
}

void MainViewController::handleCurrentDownloadChange(const QString& keyPath, const vlr::KeyValueChange& change)
{
    const VLRTransferReportingPtr transfer = m_currentDownload;
    if (transfer && keyPath == VLRTransferReporting::Key::finished) {
        const bool finished = change.hasNewValue() && !change.newValueIsNull() && change.newValue->toBool();
        if (finished && !m_openedCurrentDownload
            && transfer->subType() == VLRTransferReporting::RequestedDownloadSubType) {
            m_openedCurrentDownload = true;
            if (m_services.defaults->boolForKey(VLRUserDefaultsKeyAutoOpenAssets)) {
                const QString path = transfer->fileURL().toLocalFile();
                if (!path.isEmpty() && VLRFileManager::fileExistsAtPath(path))
                    if (VLRDesktopServices* desktop = m_services.desktop)
                        desktop->openFile(path);
            } else {
                m_services.notifications->vlr_scheduledNotificationWithTitle(
                    vlr::localized("Your download is ready!"), lastPathComponent(transfer->fileURL()),
                    vlr::localized("Open"), transfer->identifier(), transfer->fileURL(),
                    VLRUserNotificationTypeDownloadCompleted);
            }
        }
    } else if (transfer && keyPath == VLRTransferReporting::Key::error && change.hasNewValue()
               && !change.newValueIsNull()) {
        m_openedCurrentDownload = true;
        const vlr::OptionalError& error = transfer->error();
        if (error && !error->isCancellation()) {
            m_services.notifications->vlr_scheduledNotificationWithTitle(
                vlr::format(vlr::localized("Error downloading project: \"%@\""),
                            lastPathComponent(transfer->fileURL())),
                error->localizedDescription, transfer->identifier(), VLRUserNotificationTypeTransferFailed);
        }
    }
    if (m_parts.transfersViewController && m_userSession && m_userSession->downloader())
        m_parts.transfersViewController->setDownloads(m_userSession->downloader()->transfers());
}

void MainViewController::handleCurrentUploadChange(const QString& keyPath, const vlr::KeyValueChange& change)
{
    const VLRTransferReportingPtr transfer = m_currentUpload;
    // The null placeholder passes the first test; the transfer's own error
    // then decides.
    if (transfer && keyPath == VLRTransferReporting::Key::error && change.hasNewValue()) {
        const vlr::OptionalError& error = transfer->error();
        if (error && !error->isCancellation()) {
            m_services.notifications->vlr_scheduledNotificationWithTitle(
                vlr::format(vlr::localized("Error uploading project: \"%@\""), lastPathComponent(transfer->fileURL())),
                error->localizedDescription, transfer->identifier(), VLRUserNotificationTypeTransferFailed);
        }
    }
    if (m_parts.transfersViewController && m_userSession && m_userSession->uploader())
        m_parts.transfersViewController->setUploads(m_userSession->uploader()->transfers());
}

void MainViewController::trackCurrentTransfers(const VLRUserSessionPtr& session)
{
    const VLRTransferReportingPtr upload = session->uploader() ? session->uploader()->currentTransfer() : nullptr;
    const VLRTransferReportingPtr download = session->downloader() ? session->downloader()->currentTransfer() : nullptr;

    if (upload != m_currentUpload) {
        if (m_currentUpload)
            for (QLatin1StringView key : transferKeyPaths)
                m_currentUpload->removeObserver(this, QString(key), CurrentUploadContext);
        m_currentUpload = upload;
        if (upload)
            for (QLatin1StringView key : transferKeyPaths)
                upload->addObserver(this, QString(key), vlr::KeyValueObservingOptionNew, CurrentUploadContext);
    }
    if (download != m_currentDownload) {
        if (m_currentDownload)
            for (QLatin1StringView key : transferKeyPaths)
                m_currentDownload->removeObserver(this, QString(key), CurrentDownloadContext);
        m_currentDownload = download;
        m_openedCurrentDownload = false;
        if (download)
            for (QLatin1StringView key : transferKeyPaths)
                download->addObserver(this, QString(key), vlr::KeyValueObservingOptionNew, CurrentDownloadContext);
    }
}

void MainViewController::releaseCurrentTransfers()
{
    if (m_currentUpload) {
        for (QLatin1StringView key : transferKeyPaths)
            m_currentUpload->removeObserver(this, QString(key), CurrentUploadContext);
        m_currentUpload = nullptr;
    }
    if (m_currentDownload) {
        for (QLatin1StringView key : transferKeyPaths)
            m_currentDownload->removeObserver(this, QString(key), CurrentDownloadContext);
        m_currentDownload = nullptr;
    }
}

void MainViewController::updateStateOfPages(bool withMarketplace)
{
    if (m_parts.workspacesViewController)
        m_parts.workspacesViewController->updateState();
    if (m_parts.fileDropViewController)
        m_parts.fileDropViewController->updateState();
    if (m_parts.transfersViewController)
        m_parts.transfersViewController->updateState();
    if (withMarketplace && m_parts.marketplaceViewController)
        m_parts.marketplaceViewController->updateState();
}
