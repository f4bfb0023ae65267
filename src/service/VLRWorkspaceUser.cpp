#include "service/VLRWorkspaceUser.h"

QVariant VLRWorkspaceUser::valueForKey(const QString& key) const
{
    if (key == QLatin1String("avatar"))
        return vlr::boxed(m_avatar);
    return VLRObject::valueForKey(key);
}
