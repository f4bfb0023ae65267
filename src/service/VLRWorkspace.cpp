#include "service/VLRWorkspace.h"

#include "service/VLRWorkspaceUser.h"

QVariant VLRWorkspace::valueForKey(const QString& key) const
{
    if (key == QLatin1String("workspaceUsers"))
        return vlr::boxed(m_workspaceUsers);
    return VLRObject::valueForKey(key);
}
