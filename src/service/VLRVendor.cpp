#include "service/VLRVendor.h"

QVariant VLRVendor::valueForKey(const QString& key) const
{
    if (key == Key::name)
        return vlr::boxed(m_name);
    return VLRObject::valueForKey(key);
}
