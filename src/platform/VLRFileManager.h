#pragma once

#include <QString>

// The few questions the program asks of the file system.
class VLRFileManager
{
public:
    // Symbolic links are followed: a dangling link counts as nothing there.
    static bool fileExistsAtPath(const QString& path, bool* isDirectory = nullptr);

    // Without intermediate directories the parent must exist and the
    // directory must not; with them, an existing directory is a success.
    static bool createDirectoryAtPath(const QString& path, bool withIntermediateDirectories);

    // A bundle that the user sees as one file. Linux has no such thing; an
    // application bundle copied from a Mac, a directory whose name ends in
    // ".app", is taken as one, so that it travels as a whole.
    static bool isFilePackageAtPath(const QString& path);

    static QString homeDirectory();

    // The last part of a path, as the user would name it: a folder's path
    // that ends in a slash still gives the folder's name, and "/" gives "/".
    static QString lastPathComponent(const QString& path);
};
