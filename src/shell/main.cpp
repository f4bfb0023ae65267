// A resident application with no window: the status item and its popover are
// the client's whole presence.

#include "platform/VLRFreedesktopNotificationCenter.h"
#include "platform/VLRUserNotificationCenter.h"
#include "shell/AppDelegate.h"
#include "shell/ClientParts.h"
#include "shell/TerminationSignalWatcher.h"
#include "widgets/VLRFonts.h"

#include <QApplication>
#include <QTimer>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Veluria"));
    QApplication::setApplicationName(QStringLiteral("Veluria"));
    QApplication::setApplicationVersion(QStringLiteral(VELURIA_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("veluria"));
    QApplication::setQuitOnLastWindowClosed(false);
    VLRFonts::loadMuli();

    VLRUserNotificationCenter::setDefaultUserNotificationCenter(std::make_shared<VLRFreedesktopNotificationCenter>());

    AppDelegate delegate(makeClientParts);
    delegate.setLaunchedAsLoginItem(QApplication::arguments().contains(QStringLiteral("--autostart")));
    QObject::connect(&delegate, &AppDelegate::terminated, &app, &QApplication::quit);

    TerminationSignalWatcher stopSignals;
    QObject::connect(&stopSignals, &TerminationSignalWatcher::terminationRequested, &delegate, &AppDelegate::terminate);

    delegate.awakeFromNib();
    QTimer::singleShot(0, &delegate, &AppDelegate::applicationDidFinishLaunching);
    return app.exec();
}
