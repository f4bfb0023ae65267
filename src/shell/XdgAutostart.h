#pragma once

#include <QString>

// The programs the desktop starts at login, as the freedesktop autostart
// folder lists them: one desktop entry a program. An entry belongs to this
// program when its command runs this program's executable; an entry marked
// hidden or switched off counts as absent. The folder is read anew at each
// question; nothing is cached.
class XdgAutostart
{
public:
    // The name of the entry this program writes.
    static inline const QString EntryFileName = QStringLiteral("veluria.desktop");

    // $XDG_CONFIG_HOME/autostart of the current user; null when the user has
    // no configuration folder.
    static QString userAutostartFolder();

    // The folder and the program's executable; either may be null, and then
    // isAvailable() says no.
    XdgAutostart(const QString& folder, const QString& program);
    // This user's folder and the running program.
    static XdgAutostart forThisProgram();

    bool isAvailable() const { return !m_folder.isEmpty() && !m_program.isEmpty(); }
    const QString& folder() const { return m_folder; }
    QString entryPath() const;

    // True at the first entry, in the order of their file names, that
    // starts this program.
    bool containsProgram() const;

    // Writes this program's entry, replacing an older one of the same name.
    // False with the reason in errorString() when it could not be written.
    bool insertProgram();

    // Removes the first entry that starts this program, and only that one;
    // false when there is none. A removal the file system refuses still
    // counts, with the reason in errorString().
    bool removeProgram();

    const QString& errorString() const { return m_errorString; }

    // The entry's command: this program, quoted as entries quote, started at
    // login.
    QString execLine() const;

private:
    // The entry files that start this program, first match first.
    QString firstEntryOfProgram() const;

    QString m_folder;
    QString m_program;
    QString m_errorString;
};
