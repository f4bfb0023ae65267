#pragma once

#include "service/VLRReachabilityManager.h"

// Reachability from the system's network information (NetworkManager where
// it runs). Without a backend the network counts as reachable: a check that
// then fails says more than one never tried.
class LocalReachabilityManager : public VLRReachabilityManager
{
public:
    static constexpr qint64 Reachable = 1;

    qint64 currentNetworkStatus() const override;
};
