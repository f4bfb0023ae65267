#include "service/VLRUser.h"

QVariant VLRUser::valueForKey(const QString& key) const
{
    if (key == Key::avatar)
        return vlr::boxed(m_avatar);
    return VLRObject::valueForKey(key);
}
