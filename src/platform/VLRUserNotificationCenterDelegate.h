#pragma once

#include "platform/VLRUserNotification.h"

class VLRUserNotificationCenter;

// Told by a notification centre before it shows a notification and when the
// user activates one.
class VLRUserNotificationCenterDelegate
{
public:
    virtual ~VLRUserNotificationCenterDelegate() = default;

    // false keeps the notification from being shown.
    virtual bool userNotificationCenterShouldPresentNotification(VLRUserNotificationCenter* center,
                                                                 const VLRUserNotificationPtr& notification) = 0;

    // The notification's activationType tells a click on it from one on its
    // action button.
    virtual void userNotificationCenterDidActivateNotification(VLRUserNotificationCenter* center,
                                                               const VLRUserNotificationPtr& notification) = 0;
};
