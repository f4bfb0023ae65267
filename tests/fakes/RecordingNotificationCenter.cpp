#include "fakes/RecordingNotificationCenter.h"

#include "platform/VLRUserNotificationCenterDelegate.h"

void RecordingNotificationCenter::scheduleNotification(const VLRUserNotificationPtr& notification)
{
    if (notification)
        m_scheduled.push_back(notification);
}

VLRUserNotificationPtr RecordingNotificationCenter::lastScheduledNotification() const
{
    return m_scheduled.empty() ? nullptr : m_scheduled.back();
}

bool RecordingNotificationCenter::wouldPresent(const VLRUserNotificationPtr& notification)
{
    VLRUserNotificationCenterDelegate* d = delegate();
    return !d || d->userNotificationCenterShouldPresentNotification(this, notification);
}

void RecordingNotificationCenter::activate(const VLRUserNotificationPtr& notification,
                                           VLRUserNotificationActivationType type)
{
    if (!notification)
        return;
    notification->setActivationType(type);
    if (VLRUserNotificationCenterDelegate* d = delegate())
        d->userNotificationCenterDidActivateNotification(this, notification);
}
