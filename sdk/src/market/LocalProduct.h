#pragma once

#include "service/VLRProduct.h"

// A product of the local catalogue; the marketplace changes it in place.
class LocalProduct : public VLRProduct
{
public:
    using VLRProduct::setImage;
    using VLRProduct::setName;
    using VLRProduct::setVendor;
};
