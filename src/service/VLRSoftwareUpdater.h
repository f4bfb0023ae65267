#pragma once

#include "service/VLRError.h"

class VLRSoftwareUpdater
{
public:
    // False while an update of the client's software is at work: the
    // application must not end now; the reason comes back in error.
    static bool canLogout(vlr::OptionalError* error);
};
