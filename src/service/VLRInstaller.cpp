#include "service/VLRInstaller.h"

QVariant VLRInstaller::valueForKey(const QString& key) const
{
    if (key == QLatin1String("image"))
        return vlr::boxed(m_image);
    if (key == QLatin1String("installedVersionString"))
        return vlr::boxed(m_installedVersionString);
    return VLRObject::valueForKey(key);
}
