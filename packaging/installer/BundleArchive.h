#pragma once

#include <QString>

// A bundle archive: a compressed tar of one folder, "veluria-<version>/",
// holding the program under bin/. Unpacking refuses anything that could land
// outside the folder it is given (absolute names, "..", links followed out)
// and anything but files, folders and links.
class BundleArchive
{
public:
    struct Unpacked
    {
        QString error; // null on success
        QString topName; // "veluria-<version>"
    };

    // Unpacks the archive into the folder, which must exist and be empty.
    static Unpacked unpack(const QString& archivePath, const QString& intoFolder);
};
