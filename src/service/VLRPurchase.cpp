#include "service/VLRPurchase.h"

QVariant VLRPurchase::valueForKey(const QString& key) const
{
    if (key == QLatin1String("renewsAt"))
        return vlr::boxed(m_renewsAt);
    return VLRObject::valueForKey(key);
}
