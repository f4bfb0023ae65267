#pragma once

#include "platform/VLRUserNotification.h"

class VLRUserNotificationCenterDelegate;

// Shows notifications to the user at their delivery date and reports their
// activation to its delegate. Used on the GUI thread.
class VLRUserNotificationCenter
{
public:
    virtual ~VLRUserNotificationCenter() = default;

    virtual void scheduleNotification(const VLRUserNotificationPtr& notification) = 0;

    // Not owned: the delegate clears itself before it goes away.
    void setDelegate(VLRUserNotificationCenterDelegate* delegate) { m_delegate = delegate; }
    VLRUserNotificationCenterDelegate* delegate() const { return m_delegate; }

private:
    VLRUserNotificationCenterDelegate* m_delegate = nullptr;
};
