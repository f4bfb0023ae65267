#pragma once

#include <QString>
#include <QStringList>

// What a per-user bundle puts on the desktop of its user, under the XDG data
// and config folders: the menu entry that also handles veluria: links, the
// icon, Dolphin's service menu and Nautilus' script "Publish with Veluria".
// Each is written from the bundle's templates with the program it starts.
class DesktopIntegration
{
public:
    // Writes every entry for the program; the errors, empty when all went in.
    static QStringList install(const QString& templatesFolder, const QString& iconFile, const QString& program);
    // Removes every entry, the autostart entry, the veluria: handler and the
    // bookmark of the user folder.
    static void remove();

    // The user's autostart entry, where it starts the program of the tree an
    // update has left, starts the bundle's "current" program instead, so
    // that the next login starts the new version.
    static void followCurrent(const QString& oldTree, const QString& bundleRoot);

    // The program as a desktop entry's Exec names it: plain where it can be,
    // quoted as the format says otherwise, percent signs doubled.
    static QString execProgram(const QString& program);
};
