#include "fakes/RecordingNotificationCenter.h"
#include "platform/VLRFreedesktopNotificationCenter.h"
#include "service/VLRLogFormat.h"

#include <gtest/gtest.h>

namespace {

TEST(UserNotificationCenterTest, TheDefaultCentreIsTheDesktopsUnlessOneIsInstalled)
{
    vlr::setLogFilePath(QString());
    VLRUserNotificationCenter* desktop = VLRUserNotificationCenter::defaultUserNotificationCenter();
    EXPECT_NE(dynamic_cast<VLRFreedesktopNotificationCenter*>(desktop), nullptr);
    EXPECT_EQ(VLRUserNotificationCenter::defaultUserNotificationCenter(), desktop);

    auto recorder = std::make_shared<RecordingNotificationCenter>();
    VLRUserNotificationCenter::setDefaultUserNotificationCenter(recorder);
    EXPECT_EQ(VLRUserNotificationCenter::defaultUserNotificationCenter(), recorder.get());

    VLRUserNotificationCenter::setDefaultUserNotificationCenter(nullptr);
    EXPECT_EQ(VLRUserNotificationCenter::defaultUserNotificationCenter(), desktop);
}

} // namespace
