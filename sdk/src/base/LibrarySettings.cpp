#include "sdk/base/LibrarySettings.h"

#include <QSettings>

QUrl LibrarySettings::versionManifest()
{
    const QSettings settings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Veluria"),
                             QStringLiteral("VeluriaService"));
    const QString value = settings.value(QStringLiteral("versionManifest")).toString().trimmed();
    if (value.isEmpty())
        return {};
    return value.startsWith(QLatin1Char('/')) ? QUrl::fromLocalFile(value) : QUrl(value);
}
