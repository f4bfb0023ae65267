#include "shell/XdgAutostart.h"

#include "service/VLRPrivateFiles.h"
#include "shell/LaunchArguments.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTextStream>

#include <optional>

namespace {

const QString DesktopEntryGroup = QStringLiteral("[Desktop Entry]");

// A string value of a desktop entry as written, with its escapes undone.
QString unescapeValue(const QString& value)
{
    QString result;
    result.reserve(value.size());
    for (qsizetype index = 0; index < value.size(); ++index) {
        const QChar c = value.at(index);
        if (c != QLatin1Char('\\') || index + 1 == value.size()) {
            result.append(c);
            continue;
        }
        const QChar next = value.at(++index);
        switch (next.unicode()) {
        case 's':
            result.append(QLatin1Char(' '));
            break;
        case 'n':
            result.append(QLatin1Char('\n'));
            break;
        case 't':
            result.append(QLatin1Char('\t'));
            break;
        case 'r':
            result.append(QLatin1Char('\r'));
            break;
        default:
            result.append(next);
            break;
        }
    }
    return result;
}

QString escapeValue(const QString& value)
{
    QString result;
    for (const QChar c : value) {
        switch (c.unicode()) {
        case '\\':
            result.append(QStringLiteral("\\\\"));
            break;
        case '\n':
            result.append(QStringLiteral("\\n"));
            break;
        case '\t':
            result.append(QStringLiteral("\\t"));
            break;
        case '\r':
            result.append(QStringLiteral("\\r"));
            break;
        default:
            result.append(c);
            break;
        }
    }
    return result;
}

// One argument of a command line: plain when the shell would read nothing
// in it, as simple launchers understand only plain commands; otherwise in
// double quotes with the characters the quotes don't protect escaped. Percent
// signs are doubled either way, so that they aren't read as field codes.
QString quoteArgument(const QString& argument)
{
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    QString escaped;
    bool needsQuotes = false;
    for (const QChar c : argument) {
        needsQuotes = needsQuotes || reserved.contains(c);
        if (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$') || c == QLatin1Char('\\'))
            escaped.append(QLatin1Char('\\'));
        if (c == QLatin1Char('%'))
            escaped.append(QLatin1Char('%'));
        escaped.append(c);
    }
    if (!needsQuotes)
        return QString(argument).replace(QStringLiteral("%"), QStringLiteral("%%"));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

// The program a command line starts: its first argument, unquoted.
QString firstArgument(const QString& command)
{
    qsizetype index = 0;
    while (index < command.size() && command.at(index).isSpace())
        ++index;
    QString argument;
    if (index < command.size() && command.at(index) == QLatin1Char('"')) {
        for (++index; index < command.size(); ++index) {
            const QChar c = command.at(index);
            if (c == QLatin1Char('"'))
                break;
            if (c == QLatin1Char('\\') && index + 1 < command.size())
                argument.append(command.at(++index));
            else
                argument.append(c);
        }
    } else {
        for (; index < command.size() && !command.at(index).isSpace(); ++index)
            argument.append(command.at(index));
    }
    return argument.replace(QStringLiteral("%%"), QStringLiteral("%"));
}

// The keys of the entry's main group; nothing for a file that can't be read
// or holds no such group.
std::optional<QMap<QString, QString>> readEntry(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return std::nullopt;
    QTextStream stream(&file);
    QMap<QString, QString> keys;
    bool inGroup = false;
    bool sawGroup = false;
    while (!stream.atEnd()) {
        const QString line = stream.readLine().trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        if (line.startsWith(QLatin1Char('['))) {
            inGroup = line == DesktopEntryGroup;
            sawGroup = sawGroup || inGroup;
            continue;
        }
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (!inGroup || equals <= 0)
            continue;
        keys.insert(line.left(equals).trimmed(), unescapeValue(line.mid(equals + 1).trimmed()));
    }
    if (!sawGroup)
        return std::nullopt;
    return keys;
}

// The executable a program name or path stands for, links resolved; null
// when there is none.
QString resolvedExecutable(const QString& program)
{
    if (program.isEmpty())
        return QString();
    const QString path = program.contains(QLatin1Char('/')) ? program : QStandardPaths::findExecutable(program);
    if (path.isEmpty())
        return QString();
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? QString() : canonical;
}

bool isSwitchedOff(const QMap<QString, QString>& entry)
{
    return entry.value(QStringLiteral("Hidden")).compare(QLatin1String("true"), Qt::CaseInsensitive) == 0
        || entry.value(QStringLiteral("X-GNOME-Autostart-enabled")).compare(QLatin1String("false"), Qt::CaseInsensitive)
        == 0;
}

} // namespace

QString XdgAutostart::userAutostartFolder()
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return config.isEmpty() ? QString() : config + QStringLiteral("/autostart");
}

XdgAutostart::XdgAutostart(const QString& folder, const QString& program)
    : m_folder(folder)
    , m_program(program)
{ }

XdgAutostart XdgAutostart::forThisProgram()
{
    return XdgAutostart(userAutostartFolder(), QCoreApplication::applicationFilePath());
}

QString XdgAutostart::entryPath() const
{
    return m_folder + QLatin1Char('/') + EntryFileName;
}

QString XdgAutostart::execLine() const
{
    return quoteArgument(m_program) + QLatin1Char(' ') + LaunchArguments::AutostartOption;
}

QString XdgAutostart::firstEntryOfProgram() const
{
    if (!isAvailable())
        return QString();
    const QString program = resolvedExecutable(m_program);
    if (program.isNull())
        return QString();
    const QDir folder(m_folder);
    const QStringList names = folder.entryList({QStringLiteral("*.desktop")}, QDir::Files | QDir::Readable, QDir::Name);
    for (const QString& name : names) {
        // An entry that can't be read or names no program is passed over.
        const std::optional<QMap<QString, QString>> entry = readEntry(folder.filePath(name));
        if (!entry || isSwitchedOff(*entry))
            continue;
        if (resolvedExecutable(firstArgument(entry->value(QStringLiteral("Exec")))) == program)
            return folder.filePath(name);
    }
    return QString();
}

bool XdgAutostart::containsProgram() const
{
    return !firstEntryOfProgram().isNull();
}

bool XdgAutostart::insertProgram()
{
    m_errorString.clear();
    if (!isAvailable()) {
        m_errorString = QStringLiteral("no autostart folder");
        return false;
    }
    if (!VLRPrivateFiles::makeFolder(m_folder)) {
        m_errorString = QStringLiteral("the folder %1 can't be made").arg(m_folder);
        return false;
    }
    const bool isNew = !QFileInfo::exists(entryPath());
    QSaveFile file(entryPath());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        m_errorString = file.errorString();
        return false;
    }
    // The delay and the order give the panel time to be there before the
    // client puts its icon in it.
    const QString entry = QStringLiteral("[Desktop Entry]\n"
                                         "Type=Application\n"
                                         "Name=Veluria\n"
                                         "Comment=Workspaces, transfers and marketplace of the Veluria service\n"
                                         "Exec=%1\n"
                                         "Icon=veluria\n"
                                         "Terminal=false\n"
                                         "X-GNOME-Autostart-enabled=true\n"
                                         "X-GNOME-Autostart-Delay=3\n"
                                         "X-KDE-autostart-after=panel\n")
                              .arg(escapeValue(execLine()));
    file.write(entry.toUtf8());
    if (!file.commit()) {
        m_errorString = file.errorString();
        return false;
    }
    if (isNew)
        VLRPrivateFiles::restrictFile(entryPath());
    return true;
}

bool XdgAutostart::removeProgram()
{
    m_errorString.clear();
    const QString path = firstEntryOfProgram();
    if (path.isNull())
        return false;
    QFile file(path);
    if (!file.remove())
        m_errorString = file.errorString();
    return true;
}
