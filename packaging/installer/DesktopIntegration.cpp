#include "installer/DesktopIntegration.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>

#include <functional>

namespace {

QString dataHome()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

QString configHome()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}

struct Entry
{
    const char* templateName;
    const char* installedAs; // under the data folder
    QFileDevice::Permissions permissions;
};

const QFileDevice::Permissions Private = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
const QFileDevice::Permissions Runnable = Private | QFileDevice::ExeOwner;

const Entry Entries[] = {
    {"veluria.desktop.in", "applications/veluria.desktop", Private},
    {"veluria-publish.desktop.in", "kio/servicemenus/veluria-publish.desktop", Runnable},
    {"publish-with-veluria.sh.in", "nautilus/scripts/Publish with Veluria", Runnable},
};
const char* const IconPath = "icons/hicolor/scalable/apps/veluria.svg";

void refreshHandlers()
{
    const QString update = QStandardPaths::findExecutable(QStringLiteral("update-desktop-database"));
    if (!update.isEmpty())
        QProcess::execute(update, {QStringLiteral("-q"), dataHome() + QStringLiteral("/applications")});
}

// Rewrites the file without the lines the predicate picks, if it has any.
void removeLines(const QString& path, const std::function<bool(const QString&)>& picked)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    QStringList kept;
    bool changed = false;
    for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        const bool drop = picked(line);
        changed = changed || drop;
        if (!drop)
            kept << line;
    }
    file.close();
    if (changed && file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(kept.join(QLatin1Char('\n')).toUtf8());
}

} // namespace

QString DesktopIntegration::execProgram(const QString& program)
{
    QString exec = program;
    exec.replace(QLatin1Char('%'), QStringLiteral("%%"));
    static const QRegularExpression reserved(QStringLiteral("[ \\t\"'\\\\><~|&;$*?#()`]"));
    if (exec.contains(reserved)) {
        exec.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
        for (const QChar c : {QLatin1Char('"'), QLatin1Char('`'), QLatin1Char('$')})
            exec.replace(c, QStringLiteral("\\") + c);
        exec = QLatin1Char('"') + exec + QLatin1Char('"');
    }
    return exec;
}

QStringList DesktopIntegration::install(const QString& templatesFolder, const QString& iconFile, const QString& program)
{
    QStringList errors;
    QString asValue = program;
    asValue.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    QString execValue = execProgram(program);
    execValue.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    // Single quotes keep every character as it is; a quote itself ends them.
    const QString shellQuoted =
        QLatin1Char('\'') + QString(program).replace(QLatin1Char('\''), QStringLiteral("'\\''")) + QLatin1Char('\'');
    for (const Entry& entry : Entries) {
        QFile source(templatesFolder + QLatin1Char('/') + QLatin1String(entry.templateName));
        const QString target = dataHome() + QLatin1Char('/') + QLatin1String(entry.installedAs);
        if (!source.open(QIODevice::ReadOnly)) {
            errors << QStringLiteral("%1 can't be read: %2").arg(source.fileName(), source.errorString());
            continue;
        }
        QString text = QString::fromUtf8(source.readAll());
        text.replace(QStringLiteral("@VELURIA_EXEC_PROGRAM@"), execValue);
        text.replace(QStringLiteral("@VELURIA_INSTALLED_PROGRAM@"), asValue);
        text.replace(QStringLiteral("@VELURIA_INSTALLED_PROGRAM_RAW@"), program);
        text.replace(QStringLiteral("@VELURIA_PROGRAM_SHELL_QUOTED@"), shellQuoted);
        QDir().mkpath(QFileInfo(target).absolutePath());
        QFile written(target);
        if (!written.open(QIODevice::WriteOnly | QIODevice::Truncate) || written.write(text.toUtf8()) < 0
            || !written.setPermissions(entry.permissions))
            errors << QStringLiteral("%1 can't be written: %2").arg(target, written.errorString());
    }
    const QString icon = dataHome() + QLatin1Char('/') + QLatin1String(IconPath);
    QDir().mkpath(QFileInfo(icon).absolutePath());
    QFile::remove(icon);
    if (!QFile::copy(iconFile, icon))
        errors << QStringLiteral("%1 can't be written").arg(icon);
    refreshHandlers();
    const QString xdgMime = QStandardPaths::findExecutable(QStringLiteral("xdg-mime"));
    if (!xdgMime.isEmpty())
        QProcess::execute(
            xdgMime,
            {QStringLiteral("default"), QStringLiteral("veluria.desktop"), QStringLiteral("x-scheme-handler/veluria")});
    return errors;
}

void DesktopIntegration::followCurrent(const QString& oldTree, const QString& bundleRoot)
{
    QFile entry(configHome() + QStringLiteral("/autostart/veluria.desktop"));
    if (!entry.open(QIODevice::ReadOnly))
        return;
    auto asValue = [](const QString& program) {
        return execProgram(program).replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    };
    const QString text = QString::fromUtf8(entry.readAll());
    entry.close();
    const QString old = asValue(oldTree + QStringLiteral("/bin/veluria"));
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString& line : lines) {
        if (line.startsWith(QLatin1String("Exec=") + old + QLatin1Char(' ')) || line == QLatin1String("Exec=") + old)
            line.replace(5, old.size(), asValue(bundleRoot + QStringLiteral("/current/bin/veluria")));
    }
    const QString updated = lines.join(QLatin1Char('\n'));
    if (updated != text && entry.open(QIODevice::WriteOnly | QIODevice::Truncate))
        entry.write(updated.toUtf8());
}

void DesktopIntegration::remove()
{
    for (const Entry& entry : Entries)
        QFile::remove(dataHome() + QLatin1Char('/') + QLatin1String(entry.installedAs));
    QFile::remove(dataHome() + QLatin1Char('/') + QLatin1String(IconPath));
    QFile::remove(configHome() + QStringLiteral("/autostart/veluria.desktop"));
    // The handler's default and the file managers' bookmark of the user
    // folder name this client alone.
    removeLines(configHome() + QStringLiteral("/mimeapps.list"),
                [](const QString& line) { return line.startsWith(QLatin1String("x-scheme-handler/veluria=")); });
    const QString userFolder = QUrl::fromLocalFile(QDir::homePath() + QStringLiteral("/Veluria")).toString();
    removeLines(configHome() + QStringLiteral("/gtk-3.0/bookmarks"), [&](const QString& line) {
        return line == userFolder || line.startsWith(userFolder + QLatin1Char(' '));
    });
    refreshHandlers();
}
