#pragma once

#include "service/VLRVendor.h"

class FakeVendor final : public VLRVendor
{
public:
    using VLRVendor::setName;
};
