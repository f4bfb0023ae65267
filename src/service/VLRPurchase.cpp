#include "service/VLRPurchase.h"

QVariant VLRPurchase::valueForKey(const QString& key) const
{
    if (key == Key::renewsAt)
        return vlr::boxed(m_renewsAt);
    return VLRObject::valueForKey(key);
}
