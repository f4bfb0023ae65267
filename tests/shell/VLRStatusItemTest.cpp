#include "shell/VLRStatusItem.h"
#include "fakes/FakeClientServices.h"
#include "session/MainViewController.h"
#include "shell/ClientParts.h"
#include "shell/SystemTrayWatcher.h"
#include "widgets/StatusItemImageView.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QMenu>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <QTest>

#include <gtest/gtest.h>

TEST(VLRStatusItemTest, TheTrayIconComesWhenATrayHostArrivesAndShowsTheViewsPicture)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        GTEST_SKIP() << "needs a session bus: run under dbus-run-session";
    ASSERT_FALSE(bus.interface()->isServiceRegistered(SystemTrayWatcher::StatusNotifierWatcher).value());

    VLRStatusItem item;
    StatusItemImageView view(QRect(0, 0, 24, 24), true);
    item.setView(&view);
    EXPECT_EQ(item.trayIcon(), nullptr);

    // A panel that comes up after the client.
    QDBusConnection panel = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "panel");
    ASSERT_TRUE(panel.registerService(SystemTrayWatcher::StatusNotifierWatcher));
    for (int i = 0; i < 50 && !item.trayIcon(); ++i)
        QTest::qWait(20);
    ASSERT_NE(item.trayIcon(), nullptr);
    EXPECT_EQ(item.trayIcon()->contextMenu(), item.menu());
    EXPECT_EQ(item.menu()->actions().first()->text(), "Open Veluria");

    // The icon follows the view's picture as it changes.
    view.setViewState(2);
    QTest::qWait(300);
    EXPECT_EQ(view.image().toImage(), view.solidImage().toImage());
    EXPECT_EQ(item.trayIcon()->icon().pixmap(24, 24).toImage(), QIcon(view.solidImage()).pixmap(24, 24).toImage());
    panel.unregisterService(SystemTrayWatcher::StatusNotifierWatcher);
    QDBusConnection::disconnectFromBus("panel");
}

TEST(VLRStatusItemTest, TheMenusFirstItemPressesTheViewAndItsLastOneAsksToQuit)
{
    class PressRecorder : public StatusItemImageViewDelegate
    {
    public:
        int presses = 0;
        void statusItemImageViewDidReceiveDragEvent(StatusItemImageView*) override { }
        void statusItemImageViewDidReceiveMouseDownEvent(StatusItemImageView*) override { ++presses; }
        void statusItemImageViewDidReceiveFiles(StatusItemImageView*, const QStringList&) override { }
    } recorder;

    VLRStatusItem item;
    StatusItemImageView view(QRect(0, 0, 24, 24), true);
    view.setDelegate(&recorder);
    item.setView(&view);
    QSignalSpy quit(&item, &VLRStatusItem::quitRequested);
    item.menu()->actions().first()->trigger();
    item.menu()->actions().last()->trigger();
    EXPECT_EQ(recorder.presses, 1);
    EXPECT_EQ(quit.count(), 1);
}

TEST(ClientPartsTest, ThePopoverWithItsTabBarForPeopleToLookAt)
{
    QTemporaryDir settings;
    FakeClientServices fakes(settings.path());
    MainViewController controller(makeClientParts(fakes.services()), nullptr, fakes.services());
    controller.loadView();
    controller.sessionDidChange(nullptr);
    ASSERT_TRUE(controller.popover());
    EXPECT_EQ(controller.popover()->window()->findChildren<QWidget*>().contains(controller.view()), true);
    QDir().mkpath(VELURIA_SCREENSHOT_DIR);
    EXPECT_TRUE(controller.popover()->window()->grab().save(VELURIA_SCREENSHOT_DIR "/popover-signed-out.png"));
}
