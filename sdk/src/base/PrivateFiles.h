#pragma once

#include <QByteArray>
#include <QString>

// Files and folders that the library writes belong to the user alone: folders
// 0700, files 0600, whatever the process's umask says.
class PrivateFiles
{
public:
    // Creates the folder and any missing parents, private; a folder that is
    // there already is left as it is. False, with errno set, on failure.
    static bool makeFolder(const QString& path);
    // Opens for writing, creating the file private; -1 with errno on failure.
    static int createFile(const QString& path, bool exclusive);
    // Flushes a folder's entries, so that a rename inside it is durable.
    static bool syncFolder(const QString& path);
    // Marks an open file as being written until it is closed (an advisory
    // lock that goes with the process, also when it is killed).
    static void markInUse(int fd);
    // Removes the file unless someone has it marked in use; whether it went.
    static bool removeUnlessInUse(const QString& path);
    // Makes an existing file or folder private.
    static bool restrict(const QString& path, bool folder);
    // Writes a small file whole, private, unless it already holds exactly
    // these bytes; whether the file holds them now.
    static bool writeUnlessSame(const QString& path, const QByteArray& contents);
};
