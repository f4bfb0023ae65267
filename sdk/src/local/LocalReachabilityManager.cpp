#include "sdk/local/LocalReachabilityManager.h"

#include <QNetworkInformation>

#include <mutex>

qint64 LocalReachabilityManager::currentNetworkStatus() const
{
    static std::once_flag loaded;
    std::call_once(loaded, [] { QNetworkInformation::loadDefaultBackend(); });
    const QNetworkInformation* information = QNetworkInformation::instance();
    if (information && information->reachability() == QNetworkInformation::Reachability::Disconnected)
        return NotReachable;
    return Reachable;
}
