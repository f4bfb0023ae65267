#include "service/VLRInstaller.h"

QVariant VLRInstaller::valueForKey(const QString& key) const
{
    if (key == Key::image)
        return vlr::boxed(m_image);
    if (key == Key::installedVersionString)
        return vlr::boxed(m_installedVersionString);
    return VLRObject::valueForKey(key);
}
