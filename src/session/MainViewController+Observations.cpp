#include "session/MainViewController+Observations.h"

#include "service/VLRInstallerUpdater.h"
#include "service/VLRTransferQueue.h"
#include "service/VLRTransferReporting.h"
#include "service/VLRUserSession.h"

namespace MainViewControllerObservations {
namespace {

// Tokens are compared by identity: each is the address of a byte of its own.
char tokens[25];

constexpr unsigned None = vlr::KeyValueObservingOptionNone;
constexpr unsigned Initial = vlr::KeyValueObservingOptionInitial;

} // namespace

void* const UserContext = &tokens[0];
void* const ProjectsContext = &tokens[1];
void* const WorkspacesContext = &tokens[2];
void* const CompletedTransfersContext = &tokens[3];
void* const SyncingWorkspacesContext = &tokens[4];
void* const SyncingListsContext = &tokens[5];
void* const TransfersPausedContext = &tokens[6];
void* const InstallersContext = &tokens[7];
void* const PurchasesContext = &tokens[8];
void* const InstallerUpdatesContext = &tokens[9];
void* const NeverInstalledContext = &tokens[10];
void* const NotInstalledContext = &tokens[11];
void* const OverallOperationsContext = &tokens[12];
void* const UploaderTransfersContext = &tokens[13];
void* const UploaderThroughputContext = &tokens[14];
void* const UploaderTimeRemainingContext = &tokens[15];
void* const UploaderTimeRemainingInvalidContext = &tokens[16];
void* const UploaderCurrentTransferContext = &tokens[17];
void* const DownloaderTransfersContext = &tokens[18];
void* const DownloaderThroughputContext = &tokens[19];
void* const DownloaderTimeRemainingContext = &tokens[20];
void* const DownloaderTimeRemainingInvalidContext = &tokens[21];
void* const DownloaderCurrentTransferContext = &tokens[22];
void* const CurrentUploadContext = &tokens[23];
void* const CurrentDownloadContext = &tokens[24];

const std::array<Observation, 23> registrationOrder = {{
    {Target::Session, VLRUserSession::Key::user, None, UserContext},
    {Target::Session, VLRUserSession::Key::projects, None, ProjectsContext},
    {Target::Session, VLRUserSession::Key::workspaces, None, WorkspacesContext},
    {Target::Session, VLRUserSession::Key::completedTransfers, Initial, CompletedTransfersContext},
    {Target::Session, VLRUserSession::Key::syncingLists, None, SyncingListsContext},
    {Target::Session, VLRUserSession::Key::syncingWorkspaces, None, SyncingWorkspacesContext},
    {Target::Session, VLRUserSession::Key::transfersPaused, Initial, TransfersPausedContext},
    {Target::Session, VLRUserSession::Key::installers, None, InstallersContext},
    {Target::Session, VLRUserSession::Key::purchases, None, PurchasesContext},
    {Target::Updater, VLRInstallerUpdater::Key::installerUpdates, None, InstallerUpdatesContext},
    {Target::Updater, VLRInstallerUpdater::Key::neverInstalled, None, NeverInstalledContext},
    {Target::Updater, VLRInstallerUpdater::Key::notInstalled, None, NotInstalledContext},
    {Target::Updater, VLRInstallerUpdater::Key::overallOperations, Initial, OverallOperationsContext},
    {Target::Uploader, VLRTransferQueue::Key::transfers, Initial, UploaderTransfersContext},
    {Target::Uploader, VLRTransferQueue::Key::throughput, None, UploaderThroughputContext},
    {Target::Uploader, VLRTransferQueue::Key::timeRemaining, None, UploaderTimeRemainingContext},
    {Target::Uploader, VLRTransferQueue::Key::timeRemainingInvalid, None, UploaderTimeRemainingInvalidContext},
    {Target::Uploader, VLRTransferQueue::Key::currentTransfer, None, UploaderCurrentTransferContext},
    {Target::Downloader, VLRTransferQueue::Key::transfers, Initial, DownloaderTransfersContext},
    {Target::Downloader, VLRTransferQueue::Key::throughput, None, DownloaderThroughputContext},
    {Target::Downloader, VLRTransferQueue::Key::timeRemaining, None, DownloaderTimeRemainingContext},
    {Target::Downloader, VLRTransferQueue::Key::timeRemainingInvalid, None, DownloaderTimeRemainingInvalidContext},
    {Target::Downloader, VLRTransferQueue::Key::currentTransfer, None, DownloaderCurrentTransferContext},
}};

const std::array<Observation, 23> removalOrder = [] {
    std::array<Observation, 23> order = registrationOrder;
    std::swap(order[4], order[5]);
    return order;
}();

const std::array<QLatin1StringView, 4> transferKeyPaths = {
    VLRTransferReporting::Key::fractionCompleted, VLRTransferReporting::Key::finished, VLRTransferReporting::Key::error,
    VLRTransferReporting::Key::paused};

VLRObject* targetObject(Target target, const VLRUserSessionPtr& session)
{
    if (!session)
        return nullptr;
    switch (target) {
    case Target::Session:
        return session.get();
    case Target::Updater:
        return session->updater().get();
    case Target::Uploader:
        return session->uploader().get();
    case Target::Downloader:
        return session->downloader().get();
    }
    return nullptr;
}

} // namespace MainViewControllerObservations
