#pragma once

#include <QString>

class Database;

// Where a downloaded file goes when a newer revision replaces it: the
// download cache beside the database, so that nothing the user had is lost
// at once. The cache is kept within the user's size limit, oldest first.
class DownloadCache
{
public:
    static constexpr qint64 defaultLimit = 1000000000;

    DownloadCache(Database& database, const QString& databaseFolder);

    // Moves the file or folder into the cache; false with the reason.
    bool keep(const QString& userId, const QString& path, QString* failure);
    // Removes the user's oldest entries until they fit in the limit.
    bool trim(const QString& userId, qint64 limit);
    qint64 usage(const QString& userId);

private:
    Database& m_database;
    QString m_root;
};
