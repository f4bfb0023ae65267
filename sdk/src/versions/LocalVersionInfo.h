#pragma once

#include "service/VLRVersionInfo.h"

// What the library found out about the newest release.
class LocalVersionInfo final : public VLRVersionInfo
{
public:
    using VLRVersionInfo::setCurrentVersion;
    using VLRVersionInfo::setDownloadPageURL;
    using VLRVersionInfo::setLatestVersionNice;
    using VLRVersionInfo::setReleaseNotesHTML;
    using VLRVersionInfo::setTermsOfService;
};
