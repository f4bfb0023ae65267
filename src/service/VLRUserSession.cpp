#include "service/VLRUserSession.h"

#include "service/VLRInstaller.h"
#include "service/VLRPurchase.h"
#include "service/VLRTransferReporting.h"
#include "service/VLRUser.h"
#include "service/VLRWorkspace.h"

QVariant VLRUserSession::valueForKey(const QString& key) const
{
    if (key == QLatin1String("user"))
        return vlr::boxed(m_user);
    if (key == QLatin1String("projects"))
        return vlr::boxed(m_projects);
    if (key == QLatin1String("workspaces"))
        return vlr::boxed(m_workspaces);
    if (key == QLatin1String("completedTransfers"))
        return vlr::boxed(m_completedTransfers);
    if (key == QLatin1String("syncingWorkspaces"))
        return vlr::boxed(m_syncingWorkspaces);
    if (key == QLatin1String("syncingLists"))
        return vlr::boxed(m_syncingLists);
    if (key == QLatin1String("transfersPaused"))
        return vlr::boxed(m_transfersPaused);
    if (key == QLatin1String("installers"))
        return vlr::boxed(m_installers);
    if (key == QLatin1String("purchases"))
        return vlr::boxed(m_purchases);
    return VLRObject::valueForKey(key);
}
