#include "service/VLRInstallerUpdater.h"

#include "service/VLRInstaller.h"

QVariant VLRInstallerUpdater::valueForKey(const QString& key) const
{
    if (key == Key::installerUpdates)
        return vlr::boxed(m_installerUpdates);
    if (key == Key::neverInstalled)
        return vlr::boxed(m_neverInstalled);
    if (key == Key::notInstalled)
        return vlr::boxed(m_notInstalled);
    if (key == Key::overallOperations)
        return QVariant::fromValue(vlr::Null{});
    return VLRObject::valueForKey(key);
}
