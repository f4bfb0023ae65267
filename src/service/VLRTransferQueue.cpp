#include "service/VLRTransferQueue.h"

#include "service/VLRTransferReporting.h"

QVariant VLRTransferQueue::valueForKey(const QString& key) const
{
    if (key == Key::transfers)
        return vlr::boxed(m_transfers);
    if (key == Key::currentTransfer)
        return vlr::boxed(m_currentTransfer);
    if (key == Key::throughput)
        return vlr::boxed(m_throughput);
    if (key == Key::timeRemaining)
        return vlr::boxed(m_timeRemaining);
    if (key == Key::timeRemainingInvalid)
        return vlr::boxed(m_timeRemainingInvalid);
    return VLRObject::valueForKey(key);
}
