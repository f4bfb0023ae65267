#include "platform/VLRMainQueue.h"

#include "service/VLRLogFormat.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QMetaObject>
#include <QTimer>

#include <algorithm>

void VLRMainQueue::dispatchAsync(std::function<void()> block)
{
    dispatchAsync(QCoreApplication::instance(), std::move(block));
}

void VLRMainQueue::dispatchAsync(QObject* context, std::function<void()> block)
{
    if (!block)
        return;
    if (!context) {
        VLRLogFormat(5, QStringLiteral("SDKClient"),
                     "Main queue: a call without an application or context object was dropped");
        return;
    }
    QMetaObject::invokeMethod(context, std::move(block), Qt::QueuedConnection);
}

void VLRMainQueue::dispatchAfter(int milliseconds, std::function<void()> block)
{
    dispatchAfter(milliseconds, QCoreApplication::instance(), std::move(block));
}

void VLRMainQueue::dispatchAfter(int milliseconds, QObject* context, std::function<void()> block)
{
    if (!block)
        return;
    // The timer is armed from the context's own thread, which has the event
    // loop that will fire it, whatever thread asked for it; the time counts
    // from now, not from that turn.
    const QDeadlineTimer deadline(std::max(milliseconds, 0));
    dispatchAsync(context, [context, deadline, block = std::move(block)]() mutable {
        QTimer::singleShot(int(deadline.remainingTime()), context, std::move(block));
    });
}
