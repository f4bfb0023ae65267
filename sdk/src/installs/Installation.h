#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

// Puts a downloaded, verified package in place as an installer's
// application: an AppImage is copied, an archive unpacked, each into a
// hidden folder beside the application's folder, given an icon and a
// desktop entry, and only then swapped with the previous version in one
// rename. Whatever fails before that swap (a damaged archive, a name that
// leaves its folder, a full disk, the previous version still running) leaves
// the previous version and its entry as they were, and nothing else behind.
class Installation
{
public:
    struct Request
    {
        QString installerId;
        // Shown in the menu.
        QString name;
        QString version;
        // The package on disk, and the name it was published under.
        QString package;
        QString fileName;
        // A picture in any format Qt reads; empty for none.
        QByteArray icon;
    };

    Installation(Request request, std::function<bool()> shouldStop, std::function<void(double fraction)> advanced);

    // True when the new version is in place.
    bool run();
    bool stopped() const { return m_stopped; }
    // After a failure: what went wrong, for the user.
    const QString& failure() const { return m_failure; }
    const QString& launcher() const { return m_launcher; }

    // Takes an installed application and its entry away.
    static bool remove(const QString& installerId);
    static bool isAppImage(const QString& path, const QString& fileName);

private:
    bool stage(const QString& staging);
    bool copyAppImage(const QString& staging);
    bool unpackArchive(const QString& staging);
    QString chooseLauncher(const QStringList& executables) const;
    bool writeIcon(const QString& staging, QString* iconName);
    bool putInPlace(const QString& staging, const QString& folder, const QString& entryPartial);
    bool fail(const QString& failure);

    Request m_request;
    std::function<bool()> m_shouldStop;
    std::function<void(double)> m_advanced;
    QString m_failure;
    QString m_launcher;
    bool m_stopped = false;
};
