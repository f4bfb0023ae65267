#pragma once

#include "service/VLRError.h"

#include <QList>

#include <functional>
#include <memory>

// Records of the service library are shared: the library owns and changes
// them, the client holds references while it shows them.
class VLRUser;
class VLRWorkspace;
class VLRWorkspaceUser;
class VLRPublication;
class VLRRevision;
class VLRVendor;
class VLRProduct;
class VLRInstaller;
class VLRInstallerOperation;
class VLRPurchase;
class VLRVersionInfo;
class VLRTransferReporting;
class VLRTransferQueue;
class VLRInstallerUpdater;
class VLRUserSession;
class VLRLoginVerifier;

using VLRUserPtr = std::shared_ptr<VLRUser>;
using VLRWorkspacePtr = std::shared_ptr<VLRWorkspace>;
using VLRWorkspaceUserPtr = std::shared_ptr<VLRWorkspaceUser>;
using VLRPublicationPtr = std::shared_ptr<VLRPublication>;
using VLRRevisionPtr = std::shared_ptr<VLRRevision>;
using VLRVendorPtr = std::shared_ptr<VLRVendor>;
using VLRProductPtr = std::shared_ptr<VLRProduct>;
using VLRInstallerPtr = std::shared_ptr<VLRInstaller>;
using VLRInstallerOperationPtr = std::shared_ptr<VLRInstallerOperation>;
using VLRPurchasePtr = std::shared_ptr<VLRPurchase>;
using VLRVersionInfoPtr = std::shared_ptr<VLRVersionInfo>;
using VLRTransferReportingPtr = std::shared_ptr<VLRTransferReporting>;
using VLRTransferQueuePtr = std::shared_ptr<VLRTransferQueue>;
using VLRInstallerUpdaterPtr = std::shared_ptr<VLRInstallerUpdater>;
using VLRUserSessionPtr = std::shared_ptr<VLRUserSession>;
using VLRLoginVerifierPtr = std::shared_ptr<VLRLoginVerifier>;

using VLRWorkspaceList = QList<VLRWorkspacePtr>;
using VLRWorkspaceUserList = QList<VLRWorkspaceUserPtr>;
using VLRPublicationList = QList<VLRPublicationPtr>;
using VLRInstallerList = QList<VLRInstallerPtr>;
using VLRPurchaseList = QList<VLRPurchasePtr>;
using VLRTransferList = QList<VLRTransferReportingPtr>;

// A handler that gets only the outcome: no error, or the error.
using VLRErrorHandler = std::function<void(const vlr::OptionalError& error)>;
