#pragma once

#include <QtGlobal>

class VLRReachabilityManager
{
public:
    static constexpr qint64 NotReachable = 0;

    virtual ~VLRReachabilityManager() = default;
    // 0 means no network; any other value means reachable.
    virtual qint64 currentNetworkStatus() const = 0;
};
