#pragma once

#include <QList>
#include <QStringList>

// What one start of the program was given on its command line: whether the
// desktop started it at login, the script commands for the running client,
// and the links to download, each as the string it is. Judging a link is the
// service library's job, so nothing here looks into them: an empty argument
// is an empty link, and so is an option this program does not know.
class LaunchArguments
{
public:
    // Given by the autostart entry.
    static inline const QString AutostartOption = QStringLiteral("--autostart");

    // One script command: the method of the scripting interface and its
    // arguments, paths made absolute against the folder of this start.
    struct ScriptCommand
    {
        QString method;
        QStringList arguments;
        bool operator==(const ScriptCommand&) const = default;
    };

    // The program's arguments, its own name first.
    explicit LaunchArguments(const QStringList& arguments);

    bool launchedAsLoginItem() const { return m_launchedAsLoginItem; }
    const QStringList& links() const { return m_links; }
    const QList<ScriptCommand>& scriptCommands() const { return m_scriptCommands; }
    // The desktop entry's actions to run, by name ("show-transfers").
    const QStringList& actions() const { return m_actions; }
    bool helpRequested() const { return m_helpRequested; }
    // Why the command line can't be followed; null when it can.
    const QString& usageError() const { return m_usageError; }

    // What --help prints.
    static QString usage();

private:
    bool m_launchedAsLoginItem = false;
    bool m_helpRequested = false;
    QStringList m_links;
    QList<ScriptCommand> m_scriptCommands;
    QStringList m_actions;
    QString m_usageError;
};
