#include "service/VLRProduct.h"

QVariant VLRProduct::valueForKey(const QString& key) const
{
    if (key == Key::name)
        return vlr::boxed(m_name);
    if (key == Key::image)
        return vlr::boxed(m_image);
    return VLRObject::valueForKey(key);
}
