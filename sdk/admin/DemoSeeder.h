#pragma once

#include <QString>

class Database;

// The demo account: a person with a few workspaces of varied dates, shared
// with two other people, with files and comments in them. Made once; a
// second run changes nothing.
class DemoSeeder
{
public:
    static constexpr const char* email = "demo@veluria.local";
    static constexpr const char* password = "veluria-demo";

    explicit DemoSeeder(Database& database);

    bool seed(QString* failure);
    bool seededNow() const { return m_seededNow; }

    // Publishes a file or folder as the member, as a client's upload would;
    // the new revision's identifier, or a null string with the reason.
    static QString publishFile(Database& database, const QString& workspaceId, const QString& userId,
                               const QString& path, const QString& text, QString* failure);

private:
    QString person(const QString& address, const QString& first, const QString& last, QString* failure);
    bool workspace(const QString& name, int daysAgo, const QString& ownerId, const QStringList& memberIds,
                   const QList<QPair<QString, QString>>& files, const QString& authorId, QString* failure);

    Database& m_database;
    bool m_seededNow = false;
};
