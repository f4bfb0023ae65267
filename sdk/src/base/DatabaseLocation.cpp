#include "sdk/base/DatabaseLocation.h"

#include "sdk/base/PrivateFiles.h"

#include <QDir>

#include <condition_variable>
#include <mutex>

namespace {

struct LocationState
{
    std::mutex mutex;
    std::condition_variable arrived;
    bool handedOver = false;
    QUrl folder;
};

LocationState& state()
{
    static LocationState s;
    return s;
}

} // namespace

void DatabaseLocation::set(const QUrl& location)
{
    const QUrl folder = location.isLocalFile() ? QUrl::fromLocalFile(QDir::cleanPath(location.toLocalFile())) : QUrl();
    if (folder.isLocalFile() && PrivateFiles::makeFolder(folder.toLocalFile()))
        PrivateFiles::restrict(folder.toLocalFile(), true);
    LocationState& s = state();
    {
        std::lock_guard lock(s.mutex);
        s.folder = folder;
        s.handedOver = true;
    }
    s.arrived.notify_all();
}

QUrl DatabaseLocation::current()
{
    LocationState& s = state();
    std::lock_guard lock(s.mutex);
    return s.folder;
}

QString DatabaseLocation::waitForFolder(std::chrono::milliseconds timeout)
{
    LocationState& s = state();
    std::unique_lock lock(s.mutex);
    s.arrived.wait_for(lock, timeout, [&] { return s.handedOver; });
    return s.folder.isLocalFile() ? s.folder.toLocalFile() : QString();
}
