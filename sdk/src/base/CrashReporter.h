#pragma once

#include <QString>

// The library's crash reporting: a fatal signal leaves the signal, the time
// and a backtrace in crash.log beside the log file, and then the process
// dies as it would have.
class CrashReporter
{
public:
    static void install(const QString& folder);
    static void uninstall();
    static QString logFileName() { return QStringLiteral("crash.log"); }
};
