#include "service/VLRSoftwareUpdater.h"

// The client's software is updated by the system's package manager, never by
// this library in place, so nothing here ever keeps the application from
// ending.
bool VLRSoftwareUpdater::canLogout(vlr::OptionalError* error)
{
    if (error)
        error->reset();
    return true;
}
