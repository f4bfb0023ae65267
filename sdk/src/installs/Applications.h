#pragma once

#include <QString>

// Where software from the marketplace lives on this machine, for this user
// alone and without root: each installer in a folder of its own under
// $XDG_DATA_HOME/Veluria/Applications/, named by its identifier, with a
// desktop entry in $XDG_DATA_HOME/applications/ so that the desktop's menu
// lists it.
class Applications
{
public:
    static QString root();
    // Empty when the identifier could not be a folder's name.
    static QString folderOf(const QString& installerId);
    static QString desktopEntryOf(const QString& installerId);
    static QString desktopEntriesFolder();
    // The folder exists: what the database says was installed here is still
    // here.
    static bool isPresent(const QString& installerId);
    // Stable for this machine, so that installs are told apart per machine.
    static QString thisMachine();
};
