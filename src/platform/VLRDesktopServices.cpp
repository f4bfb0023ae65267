#include "platform/VLRDesktopServices.h"

#include "platform/VLRSystemDesktopServices.h"

namespace {

std::shared_ptr<VLRDesktopServices>& installedServices()
{
    static std::shared_ptr<VLRDesktopServices> services;
    return services;
}

} // namespace

VLRDesktopServices* VLRDesktopServices::sharedDesktopServices()
{
    static VLRSystemDesktopServices systemServices;
    return installedServices() ? installedServices().get() : &systemServices;
}

void VLRDesktopServices::setSharedDesktopServices(std::shared_ptr<VLRDesktopServices> services)
{
    installedServices() = std::move(services);
}
