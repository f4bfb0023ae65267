#include "sdk/remote/RemoteReachabilityManager.h"

RemoteReachabilityManager::Streams& RemoteReachabilityManager::streams()
{
    static Streams s;
    return s;
}

qint64 RemoteReachabilityManager::currentNetworkStatus() const
{
    {
        Streams& s = streams();
        std::lock_guard lock(s.mutex);
        if (!s.down.isEmpty())
            return NotReachable;
    }
    return LocalReachabilityManager::currentNetworkStatus();
}

void RemoteReachabilityManager::setStreamDown(const void* stream, bool down)
{
    Streams& s = streams();
    std::lock_guard lock(s.mutex);
    if (down)
        s.down.insert(stream);
    else
        s.down.remove(stream);
}
