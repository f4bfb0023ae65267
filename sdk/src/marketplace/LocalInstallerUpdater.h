#pragma once

#include "service/VLRInstallerUpdater.h"

// The session's installer groups and running operations, changed by the
// marketplace on the GUI thread.
class LocalInstallerUpdater : public VLRInstallerUpdater
{
public:
    using VLRInstallerUpdater::overallOperationsDidChange;
    using VLRInstallerUpdater::setCurrentInstall;
    using VLRInstallerUpdater::setDownloadOperations;
    using VLRInstallerUpdater::setInstallerUpdates;
    using VLRInstallerUpdater::setNeverInstalled;
    using VLRInstallerUpdater::setNotInstalled;
};
