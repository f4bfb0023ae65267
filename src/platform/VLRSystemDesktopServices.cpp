#include "platform/VLRSystemDesktopServices.h"

#include "service/VLRLogFormat.h"

#include <QDesktopServices>
#include <QFileInfo>

bool VLRSystemDesktopServices::openURL(const QUrl& url)
{
    const QString scheme = url.scheme().toLower();
    const bool web = (scheme == QLatin1String("http") || scheme == QLatin1String("https")) && !url.host().isEmpty();
    if (!url.isValid() || (!web && scheme != QLatin1String("mailto"))) {
        VLRLogFormat(5, QStringLiteral("SDKClient"), "Not opening \"%@\": only web and mail addresses are opened", url);
        return false;
    }
    if (QDesktopServices::openUrl(url))
        return true;
    VLRLogFormat(5, QStringLiteral("SDKClient"), "The desktop could not open \"%@\"", url);
    return false;
}

bool VLRSystemDesktopServices::openFile(const QString& path)
{
    const QFileInfo file(path);
    if (path.isEmpty() || file.isRelative() || !file.exists()) {
        VLRLogFormat(5, QStringLiteral("SDKClient"), "Not opening \"%@\": no such file", path);
        return false;
    }
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(file.absoluteFilePath())))
        return true;
    VLRLogFormat(5, QStringLiteral("SDKClient"), "The desktop could not open \"%@\"", path);
    return false;
}
