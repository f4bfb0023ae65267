#pragma once

#include "installer/InstallLocation.h"

#include <QString>

// Removes this install of the client. A bundle goes whole (every version and
// "current"), with its desktop entries, the autostart entry and the veluria:
// handler; a system install is removed by the package manager through
// pkexec. The user's data (settings, the library's database and logs) and
// downloads (the user folder) stay unless asked to go.
class Uninstaller
{
public:
    struct Outcome
    {
        bool removed = false;
        QString message;
    };

    explicit Uninstaller(const InstallLocation& location);

    Outcome uninstall(bool keepData);

private:
    InstallLocation m_location;
};
