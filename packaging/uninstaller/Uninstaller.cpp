#include "uninstaller/Uninstaller.h"

#include "installer/DesktopIntegration.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>

namespace {

void removeUserData()
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    for (const QString& folder : {config + QStringLiteral("/Veluria"), data + QStringLiteral("/Veluria"),
                                  QDir::homePath() + QStringLiteral("/Veluria")})
        QDir(folder).removeRecursively();
}

} // namespace

Uninstaller::Uninstaller(const InstallLocation& location)
    : m_location(location)
{ }

Uninstaller::Outcome Uninstaller::uninstall(bool keepData)
{
    switch (m_location.kind()) {
    case InstallLocation::Kind::Bundle: {
        DesktopIntegration::remove();
        if (!QDir(m_location.bundleRoot()).removeRecursively())
            return {false, QStringLiteral("%1 could not be removed whole.").arg(m_location.bundleRoot())};
        break;
    }
    case InstallLocation::Kind::System: {
        const QString pkexec = QStandardPaths::findExecutable(QStringLiteral("pkexec"));
        if (pkexec.isEmpty()
            || QProcess::execute(pkexec,
                                 {QStringLiteral("apt-get"), QStringLiteral("remove"), QStringLiteral("-y"),
                                  QStringLiteral("veluria")})
                != 0)
            return {false,
                    QStringLiteral("The package manager did not remove Veluria. To remove it, run: "
                                   "sudo apt-get remove veluria")};
        DesktopIntegration::remove();
        break;
    }
    case InstallLocation::Kind::Plain:
        return {false,
                QStringLiteral("This copy of Veluria was installed by hand; remove it the way it was "
                               "installed (the files of install_manifest.txt in its build folder).")};
    }
    if (!keepData)
        removeUserData();
    return {true,
            keepData ? QStringLiteral("Veluria is removed; your data and downloads are kept.")
                     : QStringLiteral("Veluria is removed, with your data and downloads.")};
}
