#include "service/VLRInstallerUpdater.h"

#include "service/VLRInstaller.h"

QVariant VLRInstallerUpdater::valueForKey(const QString& key) const
{
    if (key == QLatin1String("installerUpdates"))
        return vlr::boxed(m_installerUpdates);
    if (key == QLatin1String("neverInstalled"))
        return vlr::boxed(m_neverInstalled);
    if (key == QLatin1String("notInstalled"))
        return vlr::boxed(m_notInstalled);
    if (key == QLatin1String("overallOperations"))
        return QVariant::fromValue(vlr::Null{});
    return VLRObject::valueForKey(key);
}
