#pragma once

#include "service/VLRPurchase.h"

class FakePurchase final : public VLRPurchase
{
public:
    using VLRPurchase::setCanceled;
    using VLRPurchase::setCcExpiresOn;
    using VLRPurchase::setManageURL;
    using VLRPurchase::setPaymentType;
    using VLRPurchase::setProduct;
    using VLRPurchase::setRenewsAt;
};
