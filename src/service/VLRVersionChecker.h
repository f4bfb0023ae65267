#pragma once

#include "service/VLRTypes.h"

#include <functional>

using VLRVersionCheckHandler = std::function<void(bool unsupported, bool outOfDate, const vlr::OptionalError& error)>;
// The error comes first here, unlike in every other handler.
using VLRVersionInfoHandler = std::function<void(const vlr::OptionalError& error, const VLRVersionInfoPtr& info)>;

// One version check: checkVersion, then getVersionInfo on the same instance.
class VLRVersionChecker
{
public:
    virtual ~VLRVersionChecker() = default;
    virtual void checkVersion(const VLRVersionCheckHandler& handler) = 0;
    virtual void getVersionInfo(const VLRVersionInfoHandler& handler) = 0;
};
