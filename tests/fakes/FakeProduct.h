#pragma once

#include "service/VLRProduct.h"

class FakeProduct final : public VLRProduct
{
public:
    using VLRProduct::setImage;
    using VLRProduct::setName;
    using VLRProduct::setVendor;
};
