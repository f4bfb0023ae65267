#pragma once

#include <QString>
#include <QStringList>

// Names that come from other members or from links become file names here:
// one harmless path component each, never "." or "..", no separators, no
// control characters, no more than 255 bytes; and a path built from them
// stays under its root.
class SafeName
{
public:
    static QString component(const QString& name);
    // A relative path of components, each made safe; empty components drop.
    static QStringList relativePath(const QString& path);
    // Whether the path, with symbolic links resolved as far as it exists,
    // lies strictly inside the root.
    static bool staysUnder(const QString& root, const QString& path);
    // "name.ext" -> "name (2).ext", for a name that is taken.
    static QString numbered(const QString& name, int number);
};
