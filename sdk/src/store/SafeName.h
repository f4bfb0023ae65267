#pragma once

#include <QString>
#include <QStringList>

// Names that come from other members or from links become file names here:
// one harmless path component each, never "." or "..", no separators, no
// control characters; and a path built from them stays under its root.
//
// A name is kept short enough that every name derived from it still fits
// the file system's 255 bytes: its hidden partial while it downloads, and
// "name (2)" when the name is taken. It is cut between characters, before
// its extension.
class SafeName
{
public:
    static constexpr qsizetype maxNameBytes = 255;

    static QString component(const QString& name);
    // A relative path of components, each made safe; empty components drop.
    static QStringList relativePath(const QString& path);
    // Whether the path, with symbolic links resolved as far as it exists,
    // lies strictly inside the root.
    static bool staysUnder(const QString& root, const QString& path);
    // "name.ext" -> "name (2).ext", for a name that is taken.
    static QString numbered(const QString& name, int number);
    // "name" -> "name (tag)", for a name that must not meet another one.
    static QString tagged(const QString& name, const QString& tag);
    // ".name.veluria-part": where a file or folder of that name is written
    // before it takes its name.
    static QString hiddenPartial(const QString& name);

    // The longest name component() gives, so that its partial fits.
    static qsizetype longestName();
};
