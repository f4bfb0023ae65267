#include "platform/VLRSystemDesktopServices.h"

#include "service/VLRLogFormat.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QFileInfo>
#include <QMimeDatabase>

namespace {

const QString Tag = QStringLiteral("SDKClient");

// Types that openers start as programs, or hand to one that runs them.
const QStringList RunnableTypes = {
    QStringLiteral("application/x-executable"),
    QStringLiteral("application/x-sharedlib"),
    QStringLiteral("application/x-pie-executable"),
    QStringLiteral("application/x-shellscript"),
    QStringLiteral("application/x-desktop"),
    QStringLiteral("application/x-ms-dos-executable"),
    QStringLiteral("application/x-msdownload"),
    QStringLiteral("application/x-msi"),
    QStringLiteral("application/vnd.appimage"),
    QStringLiteral("application/x-java-archive"),
    QStringLiteral("application/x-perl"),
    QStringLiteral("text/x-python"),
    QStringLiteral("text/x-python3"),
    QStringLiteral("application/x-ruby"),
    QStringLiteral("application/x-php"),
    QStringLiteral("application/x-csh"),
    QStringLiteral("application/x-deb"),
    QStringLiteral("application/x-rpm"),
    QStringLiteral("application/x-flatpak"),
    QStringLiteral("application/vnd.flatpak.ref"),
};

bool isRunnable(const QMimeType& type)
{
    return std::any_of(RunnableTypes.cbegin(), RunnableTypes.cend(),
                       [&type](const QString& runnable) { return type.inherits(runnable); });
}

} // namespace

bool VLRSystemDesktopServices::openURL(const QUrl& url)
{
    const QString scheme = url.scheme().toLower();
    const bool web = (scheme == QLatin1String("http") || scheme == QLatin1String("https")) && !url.host().isEmpty();
    if (!url.isValid() || (!web && scheme != QLatin1String("mailto"))) {
        VLRLogFormat(5, Tag, "Not opening \"%@\": only web and mail addresses are opened", url);
        return false;
    }
    if (QDesktopServices::openUrl(url))
        return true;
    VLRLogFormat(5, Tag, "The desktop could not open \"%@\"", url);
    return false;
}

bool VLRSystemDesktopServices::openFile(const QString& path)
{
    const QFileInfo file(path);
    if (path.isEmpty() || file.isRelative() || !file.exists()) {
        VLRLogFormat(5, Tag, "Not opening \"%@\": no such file", path);
        return false;
    }
    if (mightRunAProgram(file.absoluteFilePath())) {
        VLRLogFormat(4, Tag, "Showing \"%@\" in its folder: opening it might run a program", path);
        return showInFolder(file.absoluteFilePath());
    }
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(file.absoluteFilePath())))
        return true;
    VLRLogFormat(5, Tag, "The desktop could not open \"%@\"", path);
    return false;
}

bool VLRSystemDesktopServices::mightRunAProgram(const QString& path)
{
    const QFileInfo file(path);
    if (file.isDir())
        return false;
    if (file.isExecutable())
        return true;
    // Openers judge by the name or by the contents; either may say program.
    const QMimeDatabase types;
    return isRunnable(types.mimeTypeForFile(file, QMimeDatabase::MatchExtension))
        || isRunnable(types.mimeTypeForFile(file, QMimeDatabase::MatchContent));
}

// The file manager's own interface selects the file; without one, the
// folder is opened. The call is not waited for: a file manager started for
// it may take its time.
bool VLRSystemDesktopServices::showInFolder(const QString& path)
{
    const QUrl folder = QUrl::fromLocalFile(QFileInfo(path).absolutePath());
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return openFolder(folder);
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QUrl::fromLocalFile(path).toString()} << QString();
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, [folder](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        if (finished->isError())
            openFolder(folder);
    });
    return true;
}

bool VLRSystemDesktopServices::openFolder(const QUrl& folder)
{
    if (QDesktopServices::openUrl(folder))
        return true;
    VLRLogFormat(5, Tag, "The desktop could not show \"%@\"", folder);
    return false;
}
