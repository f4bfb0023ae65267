#pragma once

#include "sdk/local/LocalReachabilityManager.h"

#include <QSet>

#include <mutex>

// Reachability as the system sees it, and, while a session of a team server
// has lost its push stream, not reachable: that stream is the session's
// line to the server.
class RemoteReachabilityManager : public LocalReachabilityManager
{
public:
    qint64 currentNetworkStatus() const override;

    // A stream tells when it goes down and when it stands again; one that
    // ends counts as standing.
    static void setStreamDown(const void* stream, bool down);

private:
    struct Streams
    {
        std::mutex mutex;
        QSet<const void*> down;
    };
    static Streams& streams();
};
