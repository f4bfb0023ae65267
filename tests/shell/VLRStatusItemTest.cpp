#include "shell/VLRStatusItem.h"
#include "fakes/FakeClientServices.h"
#include "session/MainViewController.h"
#include "shell/ClientParts.h"
#include "shell/SystemTrayWatcher.h"
#include "widgets/StatusItemImageView.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusVariant>
#include <QDir>
#include <QMenu>
#include <QProcess>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <QTest>

#include <gtest/gtest.h>

namespace {

// A panel's StatusNotifierItem watcher in a process of its own
// (python-dbusmock), at first without a host.
class PanelWatcher
{
public:
    PanelWatcher()
    {
        m_process.start("/usr/bin/python3",
                        {"-m", "dbusmock", "--session", SystemTrayWatcher::StatusNotifierWatcher,
                         "/StatusNotifierWatcher", SystemTrayWatcher::StatusNotifierWatcher});
        (void)QTest::qWaitFor([] { return isOnBus(); }, 10000);
    }
    ~PanelWatcher()
    {
        m_process.terminate();
        m_process.waitForFinished(5000);
        (void)QTest::qWaitFor([] { return !isOnBus(); }, 5000);
    }

    static bool isOnBus()
    {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(SystemTrayWatcher::StatusNotifierWatcher);
    }

    void registerHost() const
    {
        mock("AddProperty",
             {SystemTrayWatcher::StatusNotifierWatcher, "IsStatusNotifierHostRegistered",
              QVariant::fromValue(QDBusVariant(true))});
        mock("EmitSignal",
             {SystemTrayWatcher::StatusNotifierWatcher, "StatusNotifierHostRegistered", "",
              QVariant::fromValue(QVariantList())});
    }

private:
    static void mock(const char* method, const QVariantList& arguments)
    {
        QDBusMessage call = QDBusMessage::createMethodCall(
            SystemTrayWatcher::StatusNotifierWatcher, "/StatusNotifierWatcher", "org.freedesktop.DBus.Mock", method);
        call.setArguments(arguments);
        QDBusConnection::sessionBus().call(call);
    }

    QProcess m_process;
};

} // namespace

TEST(VLRStatusItemTest, TheTrayIconComesWhenAHostRegistersWithAWatcherAndShowsTheViewsPicture)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        GTEST_SKIP() << "needs a session bus: run under dbus-run-session";
    ASSERT_FALSE(PanelWatcher::isOnBus());

    VLRStatusItem item;
    StatusItemImageView view(QRect(0, 0, 24, 24), true);
    item.setView(&view);
    EXPECT_EQ(item.trayIcon(), nullptr);

    // A panel that comes up after the client: its watcher first, still
    // without a host, then the host.
    PanelWatcher watcher;
    ASSERT_TRUE(PanelWatcher::isOnBus());
    QTest::qWait(300);
    EXPECT_EQ(item.trayIcon(), nullptr);
    watcher.registerHost();
    EXPECT_TRUE(QTest::qWaitFor([&item] { return item.trayIcon() != nullptr; }, 5000));
    ASSERT_NE(item.trayIcon(), nullptr);
    EXPECT_EQ(item.trayIcon()->contextMenu(), item.menu());
    EXPECT_EQ(item.menu()->actions().first()->text(), "Open Veluria");

    // The icon follows the view's picture as it changes.
    view.setViewState(2);
    QTest::qWait(300);
    EXPECT_EQ(view.image().toImage(), view.solidImage().toImage());
    EXPECT_EQ(item.trayIcon()->icon().pixmap(24, 24).toImage(), QIcon(view.solidImage()).pixmap(24, 24).toImage());
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
