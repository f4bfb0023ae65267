#include "fakes/RecordingDesktopServices.h"
#include "platform/VLRSystemDesktopServices.h"

#include <gtest/gtest.h>

namespace {

TEST(DesktopServicesTest, TheSharedServicesAreTheDesktopsUnlessSomeAreInstalled)
{
    VLRDesktopServices* desktop = VLRDesktopServices::sharedDesktopServices();
    EXPECT_NE(dynamic_cast<VLRSystemDesktopServices*>(desktop), nullptr);

    auto recorder = std::make_shared<RecordingDesktopServices>();
    VLRDesktopServices::setSharedDesktopServices(recorder);
    EXPECT_EQ(VLRDesktopServices::sharedDesktopServices(), recorder.get());

    VLRDesktopServices::setSharedDesktopServices(nullptr);
    EXPECT_EQ(VLRDesktopServices::sharedDesktopServices(), desktop);
}

} // namespace
