#include "service/VLRWorkspaceUser.h"

QVariant VLRWorkspaceUser::valueForKey(const QString& key) const
{
    if (key == Key::avatar)
        return vlr::boxed(m_avatar);
    return VLRObject::valueForKey(key);
}
