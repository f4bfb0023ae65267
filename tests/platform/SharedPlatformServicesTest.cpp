#include "fakes/RecordingDesktopServices.h"
#include "fakes/RecordingNotificationCenter.h"
#include "platform/VLRFreedesktopNotificationCenter.h"
#include "platform/VLRSystemDesktopServices.h"
#include "service/VLRLogFormat.h"

#include <gtest/gtest.h>

// The client reaches the desktop through shared instances that tests replace
// with their doubles; taking the double away brings the desktop's back.
TEST(SharedPlatformServicesTest, TheDesktopsServicesAndNotificationCentreUnlessOthersAreInstalled)
{
    vlr::setLogFilePath(QString());
    VLRDesktopServices* desktop = VLRDesktopServices::sharedDesktopServices();
    EXPECT_NE(dynamic_cast<VLRSystemDesktopServices*>(desktop), nullptr);
    auto services = std::make_shared<RecordingDesktopServices>();
    VLRDesktopServices::setSharedDesktopServices(services);
    EXPECT_EQ(VLRDesktopServices::sharedDesktopServices(), services.get());
    VLRDesktopServices::setSharedDesktopServices(nullptr);
    EXPECT_EQ(VLRDesktopServices::sharedDesktopServices(), desktop);

    VLRUserNotificationCenter* centre = VLRUserNotificationCenter::defaultUserNotificationCenter();
    EXPECT_NE(dynamic_cast<VLRFreedesktopNotificationCenter*>(centre), nullptr);
    auto recorder = std::make_shared<RecordingNotificationCenter>();
    VLRUserNotificationCenter::setDefaultUserNotificationCenter(recorder);
    EXPECT_EQ(VLRUserNotificationCenter::defaultUserNotificationCenter(), recorder.get());
    VLRUserNotificationCenter::setDefaultUserNotificationCenter(nullptr);
    EXPECT_EQ(VLRUserNotificationCenter::defaultUserNotificationCenter(), centre);
}
