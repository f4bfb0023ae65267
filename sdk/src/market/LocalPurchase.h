#pragma once

#include "service/VLRPurchase.h"

// A purchase of the local catalogue; the marketplace changes it in place.
class LocalPurchase : public VLRPurchase
{
public:
    using VLRPurchase::setCanceled;
    using VLRPurchase::setCcExpiresOn;
    using VLRPurchase::setManageURL;
    using VLRPurchase::setPaymentType;
    using VLRPurchase::setProduct;
    using VLRPurchase::setRenewsAt;
};
