#pragma once

#include <QString>

// The user's processes that run a program from a folder: its executable, or
// a script or AppImage in it that an interpreter or runtime was given.
class RunningPrograms
{
public:
    // The first such process's pid, or 0.
    static qint64 runningFrom(const QString& folder);
};
