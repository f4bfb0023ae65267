#pragma once

#include "service/VLRCancelling.h"
#include "service/VLRProgressReporting.h"

// A download or installation of an installer: progress that can be cancelled.
class VLRInstallerOperation : public VLRProgressReporting, public VLRCancelling
{ };
