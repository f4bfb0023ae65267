// veluria-installer: installs the version the manifest announces. The client
// starts it with "silent"; `--manifest URL` reads another manifest than the
// library's settings name; `--set-up` puts an unpacked bundle on the desktop.
#include "installer/BundleSwap.h"
#include "installer/ClientRestart.h"
#include "installer/DesktopIntegration.h"
#include "installer/DesktopNotice.h"
#include "installer/InstallLocation.h"
#include "installer/UpdateInstaller.h"

#include "sdk/base/LibrarySettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTimer>

#include <cstdio>

namespace {

int setUp(const InstallLocation& location)
{
    const QString tree = location.tree();
    const QString root = QFileInfo(tree).absolutePath();
    const QString swapError = BundleSwap::pointCurrentAt(root, QFileInfo(tree).fileName());
    const QStringList errors = swapError.isNull()
        ? DesktopIntegration::install(tree + QStringLiteral("/share/veluria/templates"),
                                      tree + QStringLiteral("/share/icons/hicolor/scalable/apps/veluria.svg"),
                                      root + QStringLiteral("/current/bin/veluria"))
        : QStringList{swapError};
    for (const QString& error : errors)
        std::fprintf(stderr, "%s\n", qUtf8Printable(error));
    if (errors.isEmpty())
        std::printf("Veluria is set up: start it from the menu or with %s/current/bin/veluria\n", qUtf8Printable(root));
    return errors.isEmpty() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Veluria"));
    const QStringList arguments = app.arguments().mid(1);
    const InstallLocation location = InstallLocation::forProgramFolder(QCoreApplication::applicationDirPath());
    if (arguments.contains(QLatin1String("--set-up")))
        return setUp(location);
    const bool silent = arguments.contains(QLatin1String("silent"));
    const qsizetype manifestOption = arguments.indexOf(QLatin1String("--manifest"));
    const QUrl manifest = manifestOption >= 0
        ? QUrl::fromUserInput(arguments.value(manifestOption + 1), QDir::currentPath())
        : LibrarySettings::versionManifest();
    UpdateInstaller installer(location, QStringLiteral(VELURIA_VERSION));
    installer.setRestart(&ClientRestart::restart);
    int status = 1;
    QTimer::singleShot(0, &installer, [&] {
        installer.run(manifest, [&](const UpdateInstaller::Outcome& outcome) {
            status = outcome.installed || outcome.message.isNull() ? 0 : 1;
            if (!outcome.installed && !outcome.message.isNull())
                DesktopNotice::show(QStringLiteral("Error updating Veluria"), outcome.message);
            else if (!silent)
                std::printf("%s\n",
                            qUtf8Printable(outcome.message.isNull() ? QStringLiteral("Veluria is up to date.")
                                                                    : outcome.message));
            QCoreApplication::exit(status);
        });
    });
    app.exec();
    return status;
}
