#include "service/VLRProgressReporting.h"

QVariant VLRProgressReporting::valueForKey(const QString& key) const
{
    if (key == QLatin1String("fractionCompleted"))
        return vlr::boxed(m_fractionCompleted);
    if (key == QLatin1String("finished"))
        return vlr::boxed(m_finished);
    if (key == QLatin1String("error"))
        return vlr::boxed(m_error);
    return VLRObject::valueForKey(key);
}
