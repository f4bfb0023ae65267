#pragma once

#include "service/VLRSoftwareUpdater.h"

// The client's software is updated by the system's package manager, never by
// this library in place, so nothing here ever keeps the application from
// ending.
class LocalSoftwareUpdater : public VLRSoftwareUpdater
{
public:
    bool canLogout(vlr::OptionalError* error) override;
};
