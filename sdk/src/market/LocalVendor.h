#pragma once

#include "service/VLRVendor.h"

// A vendor of the local catalogue; the marketplace changes it in place.
class LocalVendor : public VLRVendor
{
public:
    using VLRVendor::setName;
};
