#include "sdk/versions/LocalSoftwareUpdater.h"

bool LocalSoftwareUpdater::canLogout(vlr::OptionalError* error)
{
    if (error)
        error->reset();
    return true;
}
