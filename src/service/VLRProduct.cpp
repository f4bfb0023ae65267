#include "service/VLRProduct.h"

QVariant VLRProduct::valueForKey(const QString& key) const
{
    if (key == QLatin1String("name"))
        return vlr::boxed(m_name);
    if (key == QLatin1String("image"))
        return vlr::boxed(m_image);
    return VLRObject::valueForKey(key);
}
