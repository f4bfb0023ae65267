#include "service/VLRTransferReporting.h"

QVariant VLRTransferReporting::valueForKey(const QString& key) const
{
    if (key == Key::fractionCompleted)
        return vlr::boxed(m_fractionCompleted);
    if (key == Key::finished)
        return vlr::boxed(m_finished);
    if (key == Key::paused)
        return vlr::boxed(m_paused);
    if (key == Key::error)
        return vlr::boxed(m_error);
    return VLRObject::valueForKey(key);
}
