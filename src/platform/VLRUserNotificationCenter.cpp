#include "platform/VLRUserNotificationCenter.h"

#include "platform/VLRFreedesktopNotificationCenter.h"

#include <QCoreApplication>

namespace {

std::shared_ptr<VLRUserNotificationCenter>& installedCenter()
{
    static std::shared_ptr<VLRUserNotificationCenter> center;
    return center;
}

std::shared_ptr<VLRUserNotificationCenter>& desktopCenter()
{
    static std::shared_ptr<VLRUserNotificationCenter> center;
    return center;
}

void releaseDesktopCenter()
{
    desktopCenter().reset();
}

} // namespace

VLRUserNotificationCenter* VLRUserNotificationCenter::defaultUserNotificationCenter()
{
    if (installedCenter())
        return installedCenter().get();
    if (!desktopCenter()) {
        desktopCenter() = std::make_shared<VLRFreedesktopNotificationCenter>();
        // Its D-Bus connection ends with the application object, so the centre
        // has to go first.
        qAddPostRoutine(releaseDesktopCenter);
    }
    return desktopCenter().get();
}

void VLRUserNotificationCenter::setDefaultUserNotificationCenter(std::shared_ptr<VLRUserNotificationCenter> center)
{
    installedCenter() = std::move(center);
}
