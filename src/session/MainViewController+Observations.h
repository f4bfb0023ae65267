#pragma once

#include "service/VLRObject.h"
#include "service/VLRTypes.h"

#include <array>

// The main controller's registrations on a session and its three companions,
// each with a private token of its own.
namespace MainViewControllerObservations {

enum class Target { Session, Updater, Uploader, Downloader };

struct Observation
{
    Target target;
    QLatin1StringView keyPath;
    unsigned options;
    void* context;
};

extern void* const UserContext;
extern void* const ProjectsContext;
extern void* const WorkspacesContext;
extern void* const CompletedTransfersContext;
extern void* const SyncingWorkspacesContext;
extern void* const SyncingListsContext;
extern void* const TransfersPausedContext;
extern void* const InstallersContext;
extern void* const PurchasesContext;
extern void* const InstallerUpdatesContext;
extern void* const NeverInstalledContext;
extern void* const NotInstalledContext;
extern void* const OverallOperationsContext;
extern void* const UploaderTransfersContext;
extern void* const UploaderThroughputContext;
extern void* const UploaderTimeRemainingContext;
extern void* const UploaderTimeRemainingInvalidContext;
extern void* const UploaderCurrentTransferContext;
extern void* const DownloaderTransfersContext;
extern void* const DownloaderThroughputContext;
extern void* const DownloaderTimeRemainingContext;
extern void* const DownloaderTimeRemainingInvalidContext;
extern void* const DownloaderCurrentTransferContext;
// Shared by the four registrations on the current upload, and on the current
// download.
extern void* const CurrentUploadContext;
extern void* const CurrentDownloadContext;

// Registration order; removal takes the same order except that
// "syncingWorkspaces" goes before "syncingLists".
extern const std::array<Observation, 23> registrationOrder;
extern const std::array<Observation, 23> removalOrder;

// The four key paths observed on a current transfer, in order.
extern const std::array<QLatin1StringView, 4> transferKeyPaths;

VLRObject* targetObject(Target target, const VLRUserSessionPtr& session);

} // namespace MainViewControllerObservations
