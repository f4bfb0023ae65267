#pragma once

#include "service/VLRError.h"

class VLRSoftwareUpdater
{
public:
    virtual ~VLRSoftwareUpdater() = default;
    // False while an update of the client's software is at work: the
    // application must not end now; the reason comes back in error.
    virtual bool canLogout(vlr::OptionalError* error) = 0;
};
