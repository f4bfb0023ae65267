#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// Writes an archive from entries in memory: the packages of the demo
// catalogue, and of tests that need odd ones. The name's ending chooses the
// kind: ".zip", ".tar.xz", else a gzip-compressed tar.
class PackageBuilder
{
public:
    struct Entry
    {
        // Taken as it stands, "../" and absolute names included.
        QString name;
        QByteArray content;
        int mode = 0644;
        // Set for a symbolic link.
        QString linkTarget;
        bool folder = false;
    };

    static bool write(const QString& path, const QList<Entry>& entries, QString* failure);
    // An application as a demo package holds it: a launcher script named
    // after it and a read-me that the script opens.
    static QList<Entry> demoApplication(const QString& command, const QString& title, const QString& version);
};
