#pragma once

#include <QString>
#include <QtGlobal>

#include <functional>

class QMessageLogContext;

// The program's Qt message handler. Every message that passes the logging
// rules (QT_LOGGING_RULES and the categories' defaults; the handler filters
// nothing) becomes one line
//     <local time, ISO with ms> [<level>] <source>: <message>
// written to stderr and to the rotating log file. The level is 3 debug,
// 4 info, 5 warning, 6 critical, 7 fatal; the source is the category's name,
// or for a VLRLogFormat line its tag alone. Control characters in the message
// are written escaped, so one message is one line. A file that can't be
// written costs the file its line, never stderr's. Any thread may log.
class VLRLogHandler
{
public:
    // Installs the handler in place of Qt's own; idempotent.
    static void install();

    // The line for one message, with its newline.
    static QByteArray format(QtMsgType type, const QMessageLogContext& context, const QString& message);
    static QString escaped(const QString& text);
};

namespace vlr {

// The log file's path, Veluria/Logs/veluria.log under the user's data
// location unless chosen; an empty path writes no file.
void setLogFilePath(const QString& path);
QString logFilePath();

// A test may listen to every line the handler writes (level, source, message
// unescaped); listening installs the handler.
using LogObserver = std::function<void(int level, const QString& source, const QString& message)>;
void setLogObserver(LogObserver observer);

} // namespace vlr
