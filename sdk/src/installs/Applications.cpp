#include "sdk/installs/Applications.h"

#include "sdk/store/SafeName.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <QSysInfo>

namespace {

QString dataHome()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

bool usable(const QString& installerId)
{
    return !installerId.isEmpty() && SafeName::component(installerId) == installerId
        && !installerId.startsWith(QLatin1Char('.'));
}

} // namespace

QString Applications::root()
{
    return dataHome() + QStringLiteral("/Veluria/Applications");
}

QString Applications::folderOf(const QString& installerId)
{
    return usable(installerId) ? root() + QLatin1Char('/') + installerId : QString();
}

QString Applications::desktopEntriesFolder()
{
    return dataHome() + QStringLiteral("/applications");
}

QString Applications::desktopEntryOf(const QString& installerId)
{
    return usable(installerId) ? desktopEntriesFolder() + QStringLiteral("/veluria-%1.desktop").arg(installerId)
                               : QString();
}

bool Applications::isPresent(const QString& installerId)
{
    const QString folder = folderOf(installerId);
    return !folder.isEmpty() && QFileInfo(folder).isDir();
}

QString Applications::thisMachine()
{
    const QByteArray id = QSysInfo::machineUniqueId();
    return id.isEmpty() ? QSysInfo::machineHostName() : QString::fromLatin1(id);
}
