// A resident application with no window: the status item and its popover are
// the client's whole presence.

#include "platform/VLRFreedesktopNotificationCenter.h"
#include "platform/VLRNotificationScheduling.h"
#include "platform/VLRSystemDesktopServices.h"
#include "platform/VLRUserDefaults.h"
#include "sdk/remote/VeluriaServiceLibrary.h"
#include "service/VLRLogFormat.h"
#include "service/VLRLogHandler.h"
#include "shell/AppDelegate.h"
#include "shell/ClientInstance.h"
#include "shell/ClientParts.h"
#include "shell/LaunchArguments.h"
#include "shell/ShellLog.h"
#include "shell/TerminationSignalWatcher.h"
#include "shell/Translations.h"
#include "shell/VLRApplication.h"
#include "widgets/VLRFonts.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>

int main(int argc, char* argv[])
{
    VLRLogHandler::install(); // Qt's own messages from the start on
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments.append(QString::fromLocal8Bit(argv[index]));
    // Asking for help needs no display.
    const LaunchArguments launch(arguments);
    if (launch.helpRequested() || !launch.usageError().isNull()) {
        if (!launch.usageError().isNull())
            std::fprintf(stderr, "veluria: %s\n", qUtf8Printable(launch.usageError()));
        std::fputs(qUtf8Printable(LaunchArguments::usage()), launch.helpRequested() ? stdout : stderr);
        return launch.helpRequested() ? 0 : 2;
    }
    VLRApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Veluria"));
    QApplication::setApplicationName(QStringLiteral("Veluria"));
    QApplication::setApplicationVersion(QStringLiteral(VELURIA_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("veluria"));
    QApplication::setQuitOnLastWindowClosed(false);

    // A later start hands its commands and links to the client that runs
    // already, and ends there.
    ClientInstance instance;
    const ClientInstance::Claim claim = instance.claim();
    if (claim == ClientInstance::NameTaken)
        return ClientInstance::handOverToRunningClient(QDBusConnection::sessionBus(), launch);

    const Translations translations(QLocale::system());
    VLRFonts::useMuliThroughout();

    // The embedded local service or a team server, as the environment
    // chooses, and the desktop's own services; a test hands the client
    // doubles instead.
    VeluriaServiceLibrary library;
    VLRUserDefaults defaults(VLRUserDefaults::standardDirectory());
    VLRFreedesktopNotificationCenter notificationCenter;
    VLRNotificationScheduling notifications(&defaults, &notificationCenter);
    VLRSystemDesktopServices desktop;
    const ClientServices services{&library, &defaults, &notificationCenter, &notifications, &desktop};

    AppDelegate delegate(services, makeClientParts);
    delegate.setLaunchedAsLoginItem(launch.launchedAsLoginItem());
    instance.setAppDelegate(&delegate);
    if (claim == ClientInstance::NoSessionBus)
        qCWarning(lcShell) << "No session bus: links opened elsewhere can't reach this client";
    QObject::connect(&delegate, &AppDelegate::terminated, &app, &QApplication::quit);

    TerminationSignalWatcher stopSignals;
    QObject::connect(&stopSignals, &TerminationSignalWatcher::terminationRequested, &delegate, &AppDelegate::terminate);

    delegate.awakeFromNib();
    // The script commands and links of this start are taken once the launch
    // is over, as if they had been sent after it (within the second in which
    // the popover may still be kept closed).
    QTimer::singleShot(0, &delegate, [&delegate, &instance, &launch] {
        delegate.applicationDidFinishLaunching();
        for (const LaunchArguments::ScriptCommand& script : launch.scriptCommands())
            instance.performScriptCommand(script.method, script.arguments);
        for (const QString& action : launch.actions())
            instance.activateAction(action);
        for (const QString& link : launch.links())
            delegate.downloadUrl(link);
    });
    return app.exec();
}
