#pragma once

#include <QString>
#include <QUrl>

// The last push event a user's sessions of one server passed on, kept
// beside the database (a small private file a user and server), so that the
// next session of the same user on this computer starts from there: what
// was published while nobody was signed in is told once, and nothing twice.
class PushPosition
{
public:
    PushPosition(const QUrl& server, const QString& userId);

    // -1 when nothing was kept (or the database folder is not known).
    qint64 load() const;
    void save(qint64 eventId) const;

private:
    QString m_path;
};
