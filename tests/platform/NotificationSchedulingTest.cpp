#include "app/VLRUserDefaultsKeys.h"
#include "fakes/FakeClientServices.h"
#include "support/CapturedLog.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

// A fixed clock, a recording centre and notifications switched on.
class NotificationSchedulingTest : public ::testing::Test
{
protected:
    void SetUp() override { fakes.defaults->setBool(true, VLRUserDefaultsKeyShowNotifications); }

    VLRUserNotificationPtr vlr_scheduledNotificationWithTitle(const auto&... arguments)
    {
        return fakes.notifications->vlr_scheduledNotificationWithTitle(arguments...);
    }

    QTemporaryDir settingsFolder;
    FakeClientServices fakes{settingsFolder.path()};
    QDateTime& now = fakes.now;
    std::shared_ptr<RecordingNotificationCenter> notifications = fakes.notificationCenter;
};

TEST_F(NotificationSchedulingTest, ABurstComesOutSixSecondsApartAndAPauseResetsTheSpacing)
{
    const QDateTime start = now;
    auto a = vlr_scheduledNotificationWithTitle("A", "a");
    auto b = vlr_scheduledNotificationWithTitle("B", "b", "obj", "VLRUserNotificationTypeNewPublication");
    auto c = vlr_scheduledNotificationWithTitle("C", "c", "Open", QString(), QUrl(),
                                                "VLRUserNotificationTypeDownloadCompleted");
    EXPECT_EQ(a->deliveryDate(), start);
    EXPECT_EQ(b->deliveryDate(), start.addSecs(6));
    EXPECT_EQ(c->deliveryDate(), start.addSecs(12));

    // Time passes but not enough: the next waits behind the last.
    now = start.addSecs(10);
    EXPECT_EQ(vlr_scheduledNotificationWithTitle("D", "d")->deliveryDate(), start.addSecs(18));
    now = start.addSecs(60);
    EXPECT_EQ(vlr_scheduledNotificationWithTitle("E", "e")->deliveryDate(), now);
    EXPECT_EQ(notifications->scheduledNotifications().size(), 5u);
}

TEST_F(NotificationSchedulingTest, SwitchedOffNothingIsMadeAndTheSpacingDoesNotMove)
{
    vlr_scheduledNotificationWithTitle("A", "a");
    const QDateTime last = fakes.notifications->lastNotificationDeliveryDate();
    fakes.defaults->setBool(false, VLRUserDefaultsKeyShowNotifications);
    EXPECT_EQ(vlr_scheduledNotificationWithTitle("B", "b"), nullptr);
    EXPECT_EQ(vlr_scheduledNotificationWithTitle("B", "b", "o", "t"), nullptr);
    EXPECT_EQ(vlr_scheduledNotificationWithTitle("B", "b", "Open", "o", QUrl::fromLocalFile("/tmp/x"), "t"), nullptr);
    EXPECT_EQ(fakes.notifications->lastNotificationDeliveryDate(), last);
    EXPECT_EQ(notifications->scheduledNotifications().size(), 1u);

    // Absent counts as off too: only the start-up defaults turn it on.
    fakes.defaults->removeObjectForKey(VLRUserDefaultsKeyShowNotifications);
    EXPECT_EQ(vlr_scheduledNotificationWithTitle("C", "c"), nullptr);
}

TEST_F(NotificationSchedulingTest, TheUserDictionaryOfEachFormAndTheLogLine)
{
    const CapturedLog lines;

    auto plain = vlr_scheduledNotificationWithTitle("Title", "Text");
    EXPECT_TRUE(plain->userInfo().isEmpty());
    EXPECT_FALSE(plain->hasActionButton());

    auto withButton = vlr_scheduledNotificationWithTitle("Update Available", "Blender has an update", "Update",
                                                         "inst-1", QUrl(), "VLRUserNotificationTypeUpdateAvailable");
    EXPECT_TRUE(withButton->hasActionButton());
    EXPECT_EQ(withButton->actionButtonTitle(), "Update");
    EXPECT_EQ(withButton->userInfo(),
              (QVariantMap{{"VLRUserNotificationTypeKey", "VLRUserNotificationTypeUpdateAvailable"},
                           {"VLRUserNotificationObjectIdentifierKey", "inst-1"}}));
    EXPECT_EQ(lines.first(), "5 SDKClient User Notification: Title: Text");
    EXPECT_EQ(lines.size(), 2);
}
