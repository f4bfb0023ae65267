#pragma once

#include <QJsonObject>
#include <QMap>
#include <QStringList>

#include <optional>

// How each command of veluria-admin reads its command line, so that it can
// be sent to a server as the server's administrative API takes it: the
// positional arguments, the options by name (a flag as true, an option
// given more than once as a list), and the files on this machine that the
// command names, to be uploaded first.
class AdminCommandLine
{
public:
    struct Parsed
    {
        QStringList arguments;
        QJsonObject options;
        // Argument index ("2") or option name ("image") -> path on this disk.
        QMap<QString, QString> files;
    };

    static bool knows(const QString& command);
    // The value after an option ("--text"), both taken out of the
    // arguments; a null string when there is none.
    static QString takeOption(QStringList& arguments, const QString& option);
    // Null when the arguments don't fit the command's usage.
    static std::optional<Parsed> parse(const QString& command, QStringList arguments);
};
