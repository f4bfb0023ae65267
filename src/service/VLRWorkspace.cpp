#include "service/VLRWorkspace.h"

#include "service/VLRWorkspaceUser.h"

QVariant VLRWorkspace::valueForKey(const QString& key) const
{
    if (key == Key::workspaceUsers)
        return vlr::boxed(m_workspaceUsers);
    return VLRObject::valueForKey(key);
}
