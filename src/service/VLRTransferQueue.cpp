#include "service/VLRTransferQueue.h"

#include "service/VLRTransferReporting.h"

QVariant VLRTransferQueue::valueForKey(const QString& key) const
{
    if (key == QLatin1String("transfers"))
        return vlr::boxed(m_transfers);
    if (key == QLatin1String("currentTransfer"))
        return vlr::boxed(m_currentTransfer);
    if (key == QLatin1String("throughput"))
        return vlr::boxed(m_throughput);
    if (key == QLatin1String("timeRemaining"))
        return vlr::boxed(m_timeRemaining);
    if (key == QLatin1String("timeRemainingInvalid"))
        return vlr::boxed(m_timeRemainingInvalid);
    return VLRObject::valueForKey(key);
}
