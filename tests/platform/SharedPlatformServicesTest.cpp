#include "fakes/RecordingDesktopServices.h"
#include "fakes/RecordingNotificationCenter.h"
#include "platform/VLRFreedesktopNotificationCenter.h"
#include "platform/VLRSystemDesktopServices.h"
#include "service/VLRLogFormat.h"
#include "service/VLRLogHandler.h"

#include <gtest/gtest.h>

// The client reaches the desktop through shared instances that tests replace
// with their doubles; taking a double away brings the desktop's back.
TEST(SharedPlatformServicesTest, TheDesktopsServicesAndNotificationCentreUnlessOthersAreInstalled)
{
    vlr::setLogFilePath(QString());
    VLRDesktopServices::setSharedDesktopServices(std::make_shared<RecordingDesktopServices>());
    VLRDesktopServices::setSharedDesktopServices(nullptr);
    EXPECT_NE(dynamic_cast<VLRSystemDesktopServices*>(VLRDesktopServices::sharedDesktopServices()), nullptr);
    VLRUserNotificationCenter::setDefaultUserNotificationCenter(std::make_shared<RecordingNotificationCenter>());
    VLRUserNotificationCenter::setDefaultUserNotificationCenter(nullptr);
    VLRUserNotificationCenter* centre = VLRUserNotificationCenter::defaultUserNotificationCenter();
    EXPECT_NE(dynamic_cast<VLRFreedesktopNotificationCenter*>(centre), nullptr);
    EXPECT_EQ(VLRUserNotificationCenter::defaultUserNotificationCenter(), centre);
}
