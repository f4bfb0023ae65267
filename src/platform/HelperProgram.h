#pragma once

#include <QString>

// Programs that run beside the client and are not part of it (the REST proxy,
// the uninstaller): found by their executable's name, first beside this
// program, then on the PATH.
class HelperProgram
{
public:
    HelperProgram() = delete;

    // Null when no such program is installed.
    static QString executablePath(const QString& name);
};
