#include "sdk/installs/DesktopEntry.h"

#include "sdk/base/PrivateFiles.h"
#include "sdk/installs/Applications.h"

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <unistd.h>

namespace {

// One line of a value: control characters would start a new key.
QString oneLine(QString text)
{
    for (QChar& c : text)
        if (c.unicode() < 0x20 || c.unicode() == 0x7f)
            c = QLatin1Char(' ');
    return text;
}

// A string value: backslashes escaped.
QString stringValue(const QString& text)
{
    QString value = oneLine(text);
    value.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    return value;
}

// The program as one quoted argument of Exec, field codes kept literal.
QString execValue(const QString& path)
{
    QString quoted = QStringLiteral("\"");
    for (const QChar c : oneLine(path)) {
        if (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$') || c == QLatin1Char('\\'))
            quoted += QLatin1Char('\\');
        if (c == QLatin1Char('%'))
            quoted += QLatin1Char('%');
        quoted += c;
    }
    return stringValue(quoted + QLatin1Char('"'));
}

} // namespace

QByteArray DesktopEntry::text() const
{
    QString entry =
        QStringLiteral("[Desktop Entry]\nType=Application\nName=%1\nComment=%2\nExec=%3\n")
            .arg(stringValue(name), stringValue(QStringLiteral("Installed by Veluria")), execValue(launcher));
    if (!icon.isEmpty())
        entry += QStringLiteral("Icon=%1\n").arg(stringValue(icon));
    entry += QStringLiteral("Categories=Utility;\nX-Veluria-Installer=%1\nX-Veluria-Version=%2\n")
                 .arg(stringValue(installerId), stringValue(version));
    return entry.toUtf8();
}

QString DesktopEntry::writeBeside(const QString& entryPath) const
{
    const QFileInfo place(entryPath);
    if (!PrivateFiles::makeFolder(place.path()))
        return {};
    const QString partial = place.path() + QStringLiteral("/.") + place.fileName() + QStringLiteral(".part");
    const int fd = PrivateFiles::createFile(partial, false);
    if (fd < 0)
        return {};
    const QByteArray bytes = text();
    const bool written = ::write(fd, bytes.constData(), size_t(bytes.size())) == bytes.size() && ::fsync(fd) == 0;
    ::close(fd);
    if (!written) {
        ::unlink(QFile::encodeName(partial).constData());
        return {};
    }
    return partial;
}

void DesktopEntry::refreshMenus()
{
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("update-desktop-database"));
    if (!tool.isEmpty())
        QProcess::startDetached(tool, {Applications::desktopEntriesFolder()});
}
