// Observed changes become calls on the pages, on the status indication and on
// notifications. Values are read afresh from the session; the change record
// is consulted only for the current transfers' "finished" and "error".

#include "session/MainViewController.h"

#include "platform/VLRDesktopServices.h"
#include "platform/VLRFileManager.h"
#include "platform/VLRUserDefaults.h"
#include "service/VLRException.h"
#include "service/VLRInstallerUpdater.h"
#include "service/VLRTransferQueue.h"
#include "service/VLRTransferReporting.h"
#include "service/VLRUserSession.h"
#include "session/MainViewController+Observations.h"
#include "platform/VLRNotificationScheduling.h"
#include "app/VLRText.h"
#include "app/VLRUserNotificationKeys.h"
#include "app/VLRUserDefaultsKeys.h"

#include <QCoreApplication>
#include <QFileInfo>
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
    return QFileInfo(url.path()).fileName();
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

    const VLRUserSessionPtr session = m_userSession;
    VLRTransferQueue* uploader = session ? session->uploader().get() : nullptr;
    VLRTransferQueue* downloader = session ? session->downloader().get() : nullptr;
    VLRInstallerUpdater* updater = session ? session->updater().get() : nullptr;
    const VLRTransferList noTransfers;
    const VLRInstallerList noInstallers;

    if (context == UserContext) {
        if (m_parts.preferencesViewController)
            m_parts.preferencesViewController->updateWithUser(session ? session->user() : nullptr);
        updateStateOfPages(false);
    } else if (context == ProjectsContext || context == WorkspacesContext) {
        const VLRWorkspaceList workspaces = session ? session->workspaces() : VLRWorkspaceList();
        if (m_parts.workspacesViewController)
            m_parts.workspacesViewController->updateWorkspaces(workspaces);
        if (m_parts.fileDropViewController)
            m_parts.fileDropViewController->updateWorkspaces(workspaces);
    } else if (context == CurrentDownloadContext) {
        handleCurrentDownloadChange(keyPath, change);
    } else if (context == CurrentUploadContext) {
        handleCurrentUploadChange(keyPath, change);
    } else if (context == UploaderTransfersContext) {
        if (m_parts.transfersViewController)
            m_parts.transfersViewController->setUploads(uploader ? uploader->transfers() : noTransfers);
        updateStatusIndication(session);
    } else if (context == DownloaderTransfersContext) {
        if (m_parts.transfersViewController)
            m_parts.transfersViewController->setDownloads(downloader ? downloader->transfers() : noTransfers);
        updateStatusIndication(session);
    } else if (context == CompletedTransfersContext) {
        if (m_parts.transfersViewController)
            m_parts.transfersViewController->setCompleted(session ? session->completedTransfers() : noTransfers);
        updateStatusIndication(session);
    } else if (context == UploaderThroughputContext) {
        if (m_parts.transfersViewController && uploader)
            m_parts.transfersViewController->updateUploadThroughput(uploader->throughput());
    } else if (context == DownloaderThroughputContext) {
        if (m_parts.transfersViewController && downloader)
            m_parts.transfersViewController->updateDownloadThroughput(downloader->throughput());
    } else if (context == UploaderTimeRemainingContext || context == UploaderTimeRemainingInvalidContext) {
        if (m_parts.transfersViewController && uploader)
            m_parts.transfersViewController->updateUploadTimeRemaining(uploader->timeRemaining(),
                                                                 !uploader->timeRemainingInvalid());
    } else if (context == DownloaderTimeRemainingContext || context == DownloaderTimeRemainingInvalidContext) {
        if (m_parts.transfersViewController && downloader)
            m_parts.transfersViewController->updateDownloadTimeRemaining(downloader->timeRemaining(),
                                                                   !downloader->timeRemainingInvalid());
    } else if (context == TransfersPausedContext) {
        if (m_parts.transfersViewController && session)
            m_parts.transfersViewController->setTransfersPaused(session->transfersPaused());
    } else if (context == SyncingListsContext) {
        updateStatusIndication(session);
        updateStateOfPages(true);
    } else if (context == SyncingWorkspacesContext || context == UploaderCurrentTransferContext
               || context == DownloaderCurrentTransferContext || context == OverallOperationsContext) {
        updateStatusIndication(session);
    } else if (context == InstallersContext) {
        if (m_parts.marketplaceViewController)
            m_parts.marketplaceViewController->updateInstallers(session ? session->installers() : noInstallers);
    } else if (context == InstallerUpdatesContext) {
        if (m_parts.marketplaceViewController)
            m_parts.marketplaceViewController->updateInstallerUpdates(updater ? updater->installerUpdates() : noInstallers);
    } else if (context == NeverInstalledContext) {
        if (m_parts.marketplaceViewController)
            m_parts.marketplaceViewController->updateNewInstallers(updater ? updater->neverInstalled() : noInstallers);
    } else if (context == NotInstalledContext) {
        if (m_parts.marketplaceViewController)
            m_parts.marketplaceViewController->updateNotInstalled(updater ? updater->notInstalled() : noInstallers);
    } else if (context == PurchasesContext) {
        showHideMarketplaceTab(session);
        if (m_parts.marketplaceViewController)
            m_parts.marketplaceViewController->updatePurchases(session ? session->purchases() : VLRPurchaseList());
    }
    // Changes under any other token are not ours; nothing else observes
    // through this controller.
}

void MainViewController::handleCurrentDownloadChange(const QString& keyPath, const vlr::KeyValueChange& change)
{
    const VLRTransferReportingPtr transfer = m_currentDownload;
    if (transfer && keyPath == QLatin1String("finished")) {
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
                m_services.notifications->vlr_scheduledNotificationWithTitle(vlr::localized("Your download is ready!"),
                                                   lastPathComponent(transfer->fileURL()), vlr::localized("Open"),
                                                   transfer->identifier(), transfer->fileURL(),
                                                   VLRUserNotificationTypeDownloadCompleted);
            }
        }
    } else if (transfer && keyPath == QLatin1String("error") && change.hasNewValue() && !change.newValueIsNull()) {
        m_openedCurrentDownload = true;
        const vlr::OptionalError& error = transfer->error();
        if (error && !error->isCancellation()) {
            m_services.notifications->vlr_scheduledNotificationWithTitle(
                vlr::format(vlr::localized("Error downloading project: \"%@\""), lastPathComponent(transfer->fileURL())),
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
    if (transfer && keyPath == QLatin1String("error") && change.hasNewValue()) {
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
            for (const char* key : transferKeyPaths)
                m_currentUpload->removeObserver(this, QString::fromLatin1(key), CurrentUploadContext);
        m_currentUpload = upload;
        if (upload)
            for (const char* key : transferKeyPaths)
                upload->addObserver(this, QString::fromLatin1(key), vlr::KeyValueObservingOptionNew,
                                    CurrentUploadContext);
    }
    if (download != m_currentDownload) {
        if (m_currentDownload)
            for (const char* key : transferKeyPaths)
                m_currentDownload->removeObserver(this, QString::fromLatin1(key), CurrentDownloadContext);
        m_currentDownload = download;
        m_openedCurrentDownload = false;
        if (download)
            for (const char* key : transferKeyPaths)
                download->addObserver(this, QString::fromLatin1(key), vlr::KeyValueObservingOptionNew,
                                      CurrentDownloadContext);
    }
}

void MainViewController::releaseCurrentTransfers()
{
    if (m_currentUpload) {
        for (const char* key : transferKeyPaths)
            m_currentUpload->removeObserver(this, QString::fromLatin1(key), CurrentUploadContext);
        m_currentUpload = nullptr;
    }
    if (m_currentDownload) {
        for (const char* key : transferKeyPaths)
            m_currentDownload->removeObserver(this, QString::fromLatin1(key), CurrentDownloadContext);
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
