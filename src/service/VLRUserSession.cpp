#include "service/VLRUserSession.h"

#include "service/VLRInstaller.h"
#include "service/VLRPurchase.h"
#include "service/VLRTransferReporting.h"
#include "service/VLRUser.h"
#include "service/VLRWorkspace.h"

QVariant VLRUserSession::valueForKey(const QString& key) const
{
    if (key == Key::user)
        return vlr::boxed(m_user);
    if (key == Key::projects)
        return vlr::boxed(m_projects);
    if (key == Key::workspaces)
        return vlr::boxed(m_workspaces);
    if (key == Key::completedTransfers)
        return vlr::boxed(m_completedTransfers);
    if (key == Key::syncingWorkspaces)
        return vlr::boxed(m_syncingWorkspaces);
    if (key == Key::syncingLists)
        return vlr::boxed(m_syncingLists);
    if (key == Key::transfersPaused)
        return vlr::boxed(m_transfersPaused);
    if (key == Key::installers)
        return vlr::boxed(m_installers);
    if (key == Key::purchases)
        return vlr::boxed(m_purchases);
    return VLRObject::valueForKey(key);
}
