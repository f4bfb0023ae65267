// What the status item shows, when the popover opens and closes, and where
// dragged and dropped files go.

#include "session/MainViewController.h"

#include "app/AppFlavor.h"
#include "app/VLRTab.h"
#include "service/VLRInstallerUpdater.h"
#include "service/VLRTransferQueue.h"
#include "service/VLRUserSession.h"
#include "widgets/StatusItemImageView.h"

void MainViewController::updateStatusIndication(const VLRUserSessionPtr& session)
{
    qint64 state = StatusItemImageView::SignedOut;
    if (session) {
        const VLRTransferQueuePtr& uploader = session->uploader();
        const VLRTransferQueuePtr& downloader = session->downloader();
        const VLRInstallerUpdaterPtr& updater = session->updater();
        const bool uploading = uploader && uploader->currentTransfer();
        const bool downloading = downloader && downloader->currentTransfer();
        const bool installing = updater && (!updater->downloadOperations().isEmpty() || updater->currentInstall());

        if (m_parts.tabSelectorViewController) {
            m_parts.tabSelectorViewController->showActiveUploads(uploading, downloading);
            const qint64 queued =
                (uploader ? uploader->transfers().size() : 0) + (downloader ? downloader->transfers().size() : 0);
            m_parts.tabSelectorViewController->setBadgeValue(queued, VLRTab::Transfers, false);
        }
        state = StatusItemImageView::Idle;
        const bool active = uploading || downloading || installing || session->syncingWorkspaces();
        if (AppFlavor::supportsAnimatedStatusIcon() && active)
            state = StatusItemImageView::Busy;
        trackCurrentTransfers(session);
    } else {
        releaseCurrentTransfers();
        if (m_parts.tabSelectorViewController) {
            m_parts.tabSelectorViewController->setBadgeValue(0, VLRTab::Transfers, false);
            m_parts.tabSelectorViewController->setBadgeValue(0, VLRTab::Marketplace, false);
        }
    }
    if (m_statusItemImageView && m_statusItemImageView->viewState() != state)
        m_statusItemImageView->setViewState(state);
}

void MainViewController::togglePopover()
{
    if (!m_parts.popover)
        return;
    if (m_parts.popover->isShown()) {
        m_parts.popover->performClose();
        return;
    }
    StatusItemImageView* anchor = m_statusItemImageView;
    m_parts.popover->showRelativeToRect(anchor ? anchor->geometry() : QRect(), anchor, Popover::MaxYEdge);
}

void MainViewController::openPopoverIfClosed()
{
    if (m_parts.popover && !m_parts.popover->isShown())
        togglePopover();
}

void MainViewController::showFileDropView()
{
    openPopoverIfClosed();
    selectTab(VLRTab::FileDrop);
}

void MainViewController::showTransfersTab(int list, const QString& andSelectTransfer)
{
    openPopoverIfClosed();
    selectTab(VLRTab::Transfers);
    if (m_parts.transfersViewController)
        m_parts.transfersViewController->showTab(list, andSelectTransfer);
}

void MainViewController::showUpdates()
{
    if (!m_parts.marketplaceViewController)
        return;
    openPopoverIfClosed();
    selectTab(VLRTab::Marketplace);
    m_parts.marketplaceViewController->showUpdatesTab();
}

void MainViewController::statusItemImageViewDidReceiveMouseDownEvent(StatusItemImageView* view)
{
    m_statusItemImageView = view;
    togglePopover();
}

void MainViewController::statusItemImageViewDidReceiveDragEvent(StatusItemImageView* view)
{
    m_statusItemImageView = view;
    openPopoverIfClosed();
    viewDidReceiveDraggingEvent(nullptr);
}

void MainViewController::statusItemImageViewDidReceiveFiles(StatusItemImageView* view, const QStringList& files)
{
    m_statusItemImageView = view;
    openPopoverIfClosed();
    showFileDropTabWithFiles(files);
}

void MainViewController::viewDidReceiveDroppedFiles(VLRView*, const QStringList& files)
{
    showFileDropTabWithFiles(files);
}

void MainViewController::viewDidReceiveDraggingEvent(VLRView*)
{
    // On the workspaces page the drag may end on a workspace's row.
    if (!m_tabView || m_tabView->currentIndex() != VLRTab::Workspaces)
        selectTab(VLRTab::FileDrop);
}

void MainViewController::fileDropViewControllerWantsPopUpToggled(FileDropPage*)
{
    togglePopover();
}

void MainViewController::workspaceViewControllerHadCellClicked(WorkspacesPage*)
{
    if (m_parts.popover && m_parts.popover->isShown())
        togglePopover();
}
