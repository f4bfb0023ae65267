// Download requests, the library's folder question, and the requests of the
// transfers, file drop and workspaces tabs on the queues.

#include "session/MainViewController.h"

#include "app/AppFlavor.h"
#include "app/VLRTab.h"
#include "app/VLRText.h"
#include "app/VLRUserNotificationKeys.h"
#include "platform/VLRFileManager.h"
#include "platform/VLRNotificationScheduling.h"
#include "service/VLRTransferQueue.h"
#include "service/VLRUserSession.h"
#include "service/VLRWorkspace.h"
#include "session/WorkspaceLocationDelegate.h"
#include "session/WorkspaceLocationOpenPanel.h"

#include <QDir>
#include <QFileDialog>

void MainViewController::downloadUrl(const QString& url)
{
    if (!m_userSession) {
        // Waits, silently, for the next binding; only the last one survives.
        m_autoSignInURL = url;
        return;
    }
    if (m_downloadingURL)
        return;
    m_downloadingURL = true;

    QPointer<MainViewController> self(this);
    const VLRTransferHandler handler = [self](const VLRTransferReportingPtr&, const vlr::OptionalError& error) {
        if (!self)
            return;
        self->m_downloadingURL = false;
        if (error)
            self->m_services.notifications->vlr_scheduledNotificationWithTitle(
                vlr::localized("Error processing download request"), error->localizedDescription);
    };
    if (AppFlavor::supportsAutoRevisionedDownloads()) {
        m_userSession->downloadUrl(url, handler);
        return;
    }
    getFolderURLFromUser(
        vlr::localized("Choose a location for this archive"), QUrl::fromLocalFile(QDir::homePath()),
        [](const QUrl&, vlr::OptionalError*) { return true; },
        [self, url, handler](const QUrl& folder) {
            if (self && self->m_userSession)
                self->m_userSession->downloadUrl(url, folder, handler);
        });
}

void MainViewController::getFolderURLFromUser(const QString& title, const QUrl&,
                                              const VLRFolderValidationHandler& validationHandler,
                                              const VLRFolderCompletionHandler& completionHandler)
{
    if (m_parts.popover && m_parts.popover->isShown())
        m_parts.popover->performClose();

    m_workspaceLocationDelegate = std::make_unique<WorkspaceLocationDelegate>(validationHandler, completionHandler);
    // The base URL is not used: the panel opens where the platform likes.
    auto* panel = new WorkspaceLocationOpenPanel(title, m_workspaceLocationDelegate.get());
    m_workspaceLocationOpenPanel = panel;

    QPointer<MainViewController> self(this);
    connect(panel, &QFileDialog::finished, this, [self, completionHandler](int result) {
        if (!self)
            return;
        // The panel open now gives the answer: after a second question
        // replaced this one, this end reads the second panel, answers this
        // question's handler, and leaves no question open.
        auto* current = qobject_cast<WorkspaceLocationOpenPanel*>(self->m_workspaceLocationOpenPanel.data());
        const QUrl url = result == QDialog::Accepted && current ? current->URL() : QUrl();
        if (completionHandler)
            completionHandler(url);
        self->m_workspaceLocationDelegate.reset();
        self->m_workspaceLocationOpenPanel = nullptr;
    });
    panel->open();
}

bool MainViewController::setWorkspaceDownloadLocation(const QUrl& location, vlr::OptionalError* error)
{
    if (!m_workspaceLocationDelegate || !m_workspaceLocationOpenPanel) {
        if (error)
            *error = vlr::makeError(vlr::VLRAppleScriptDomain, 1,
                                    vlr::localized("Can't set workspace location because user is not currently being "
                                                   "asked to set the download location for any workspace."));
        return false;
    }
    vlr::OptionalError refusal;
    if (!m_workspaceLocationDelegate->panelValidateURL(nullptr, location, &refusal)) {
        if (error)
            *error = refusal;
        return false;
    }
    m_workspaceLocationDelegate->callCompletionHandlerWithURL(location);
    m_workspaceLocationDelegate.reset();
    QFileDialog* panel = m_workspaceLocationOpenPanel;
    m_workspaceLocationOpenPanel = nullptr;
    // Qt reports a closed dialog's end as a rejection; the question is
    // answered already, and a second answer of none would start the
    // download a second time.
    disconnect(panel, &QFileDialog::finished, this, nullptr);
    panel->close();
    return true;
}

void MainViewController::transfersViewControllerRestartedUpload(TransfersPage*, const VLRTransferReportingPtr& transfer)
{
    if (!m_userSession || !m_userSession->uploader())
        return;
    vlr::OptionalError error;
    m_userSession->uploader()->restartTransfer(transfer, &error);
    if (error)
        m_services.notifications->vlr_scheduledNotificationWithTitle(vlr::localized("Error retrying upload"),
                                                                     error->localizedDescription, QString(),
                                                                     VLRUserNotificationTypeTransferFailed);
}

void MainViewController::transfersViewControllerRestartedDownload(TransfersPage*,
                                                                  const VLRTransferReportingPtr& transfer)
{
    if (!m_userSession || !m_userSession->downloader())
        return;
    vlr::OptionalError error;
    m_userSession->downloader()->restartTransfer(transfer, &error);
    if (error)
        m_services.notifications->vlr_scheduledNotificationWithTitle(vlr::localized("Error retrying download"),
                                                                     error->localizedDescription, QString(),
                                                                     VLRUserNotificationTypeTransferFailed);
}

void MainViewController::transfersViewControllerDidPauseTransfers(TransfersPage*, bool pause)
{
    if (m_userSession)
        m_userSession->pauseAllTransfers(pause);
}

void MainViewController::transfersViewControllerDidClearCompleted(TransfersPage*)
{
    if (m_userSession)
        m_userSession->clearCompletedTransfers();
}

void MainViewController::transfersViewControllerMovedUploads(TransfersPage*, const VLRTransferList& movedUploads,
                                                             const VLRTransferReportingPtr& aboveReferenceUpload)
{
    if (m_userSession && m_userSession->uploader())
        m_userSession->uploader()->moveTransfersAbove(movedUploads, aboveReferenceUpload);
}

void MainViewController::transfersViewControllerMovedDownloads(TransfersPage*, const VLRTransferList& movedDownloads,
                                                               const VLRTransferReportingPtr& aboveReferenceDownload)
{
    if (m_userSession && m_userSession->downloader())
        m_userSession->downloader()->moveTransfersAbove(movedDownloads, aboveReferenceDownload);
}

void MainViewController::fileDropViewControllerUploadedFiles(FileDropPage*,
                                                             const std::optional<QStringList>& uploadedFiles,
                                                             const VLRWorkspacePtr& toWorkspace,
                                                             const QString& withComment, bool,
                                                             const VLRErrorHandler& completionHandler)
{
    if (!toWorkspace)
        return;
    if (!uploadedFiles) {
        if (!m_userSession)
            return;
        m_userSession->publishText(withComment, toWorkspace->identifier(),
                                   [completionHandler](const QString&, const vlr::OptionalError& error) {
                                       if (completionHandler)
                                           completionHandler(error);
                                   });
        return;
    }
    for (const QString& path : *uploadedFiles) {
        bool isDirectory = false;
        if (!VLRFileManager::fileExistsAtPath(path, &isDirectory)) {
            if (completionHandler) {
                const QVariantMap userInfo{{vlr::NSLocalizedDescriptionKey, vlr::localized("File not found")},
                                           {vlr::NSLocalizedFailureReasonErrorKey,
                                            vlr::format(vlr::localized("Unable to locate the file: %@"),
                                                        VLRFileManager::lastPathComponent(path))}};
                completionHandler(
                    vlr::Error{vlr::VLRFrameworkErrorDomain, 23, vlr::localized("File not found"), userInfo});
            }
            return;
        }
        // A package is sent as the single file it looks like.
        if (VLRFileManager::isFilePackageAtPath(path))
            isDirectory = false;
        QUrl url = QUrl::fromLocalFile(path);
        if (isDirectory && !url.path().endsWith(QLatin1Char('/')))
            url.setPath(url.path() + QLatin1Char('/'));
        // A file gone since the session went is still reported above; with
        // no session there is nothing to send it to.
        if (!m_userSession)
            return;
        // The library's publish argument gets the directory flag: the
        // request's own publish flag is always true from the file drop, and
        // the library publishes every revision it is given.
        vlr::OptionalError error;
        m_userSession->uploadAndPublishNewRevision(url, toWorkspace->identifier(), isDirectory, withComment, &error);
        if (error && completionHandler) {
            completionHandler(error);
            return;
        }
    }
    selectTab(VLRTab::Transfers);
    if (m_parts.transfersViewController)
        m_parts.transfersViewController->showTab(TransfersPage::UploadsList, QString());
    if (completionHandler)
        completionHandler(std::nullopt);
}

void MainViewController::fileDropViewControllerCreatedWorkspaceNamed(FileDropPage*,
                                                                     const QString& createdWorkspaceNamed,
                                                                     const std::optional<QStringList>&, const QString&,
                                                                     const VLRErrorHandler& completionHandler)
{
    // The files and the comment stay in the file drop, which selects the new
    // workspace and leaves the publishing to the user.
    if (!m_userSession)
        return;
    m_userSession->createNewWorkspaceWithName(
        createdWorkspaceNamed, [completionHandler](const VLRWorkspacePtr&, const vlr::OptionalError& error) {
            if (completionHandler)
                completionHandler(error);
        });
}

void MainViewController::workspaceViewControllerDidReceiveFiles(WorkspacesPage*, const QStringList& files,
                                                                const VLRWorkspacePtr& forWorkspace)
{
    if (m_parts.fileDropViewController)
        m_parts.fileDropViewController->selectWorkspace(forWorkspace);
    showFileDropTabWithFiles(files);
}
