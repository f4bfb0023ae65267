#pragma once

#include "platform/VLRUserNotificationCenter.h"

#include <vector>

// A notification centre that shows nothing: it keeps every scheduled
// notification in order, and lets a test activate one as the user would.
class RecordingNotificationCenter : public VLRUserNotificationCenter
{
public:
    void scheduleNotification(const VLRUserNotificationPtr& notification) override;

    const std::vector<VLRUserNotificationPtr>& scheduledNotifications() const { return m_scheduled; }
    VLRUserNotificationPtr lastScheduledNotification() const;
    void clear() { m_scheduled.clear(); }

    // What the delegate answers about showing the notification; true without one.
    bool wouldPresent(const VLRUserNotificationPtr& notification);

    // A click on the notification (1) or on its action button (2): sets the
    // activation type and tells the delegate.
    void activate(const VLRUserNotificationPtr& notification, VLRUserNotificationActivationType type);

private:
    std::vector<VLRUserNotificationPtr> m_scheduled;
};
