#pragma once

#include <QString>

// The menu entry of an installed application, in the freedesktop format.
// Names and paths come from the catalogue and from archives, so each is
// escaped for the entry's syntax: a name can't add keys, a path can't add
// arguments or expand fields.
class DesktopEntry
{
public:
    QString installerId;
    QString name;
    QString version;
    QString launcher;
    // Absolute; empty for none.
    QString icon;

    QByteArray text() const;
    // Written to a hidden file beside the entry's place, to be renamed
    // there once the application is in place; empty with errno on failure.
    QString writeBeside(const QString& entryPath) const;

    // Tells the desktop that the entries changed; it runs on its own.
    static void refreshMenus();
};
