#pragma once

#include <QString>

// What the client creates for the user (settings, logs, the user folder) is
// the user's alone: folders 0700 and files 0600, whatever the umask.
class VLRPrivateFiles
{
public:
    // Creates the folder and every missing folder above it, each 0700; false
    // when it isn't a folder afterwards. Folders that were there keep their
    // modes, but for the folder itself when narrowExisting is set (a folder
    // the program owns outright, left wider by an older version).
    static bool makeFolder(const QString& path, bool narrowExisting = false);

    // Narrows an existing file to 0600; false when it can't.
    static bool restrictFile(const QString& path);
};
