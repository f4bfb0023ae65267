#include "sdk/transfers/DownloadCache.h"

#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/base/DatabaseLocation.h"
#include "sdk/base/PrivateFiles.h"
#include "sdk/base/SqlStatement.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

qint64 sizeOf(const QString& path)
{
    const QFileInfo info(path);
    if (!info.isDir() || info.isSymLink())
        return info.size();
    qint64 total = 0;
    QDirIterator files(path, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (files.hasNext())
        total += QFileInfo(files.next()).size();
    return total;
}

// A move across file systems: copy, then remove the original.
bool copyAcross(const QString& from, const QString& to)
{
    const QFileInfo info(from);
    if (!info.isDir())
        return QFile::copy(from, to) && QFile::remove(from);
    if (!PrivateFiles::makeFolder(to))
        return false;
    QDirIterator entries(from, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    while (entries.hasNext()) {
        const QString entry = entries.next();
        if (!copyAcross(entry, to + QLatin1Char('/') + QFileInfo(entry).fileName()))
            return false;
    }
    return QDir(from).removeRecursively();
}

} // namespace

DownloadCache::DownloadCache(Database& database, const QString& databaseFolder)
    : m_database(database)
    , m_root(databaseFolder + QLatin1Char('/') + DatabaseLocation::cacheFolderName())
{ }

bool DownloadCache::keep(const QString& userId, const QString& path, QString* failure)
{
    const QString entryFolder = m_root + QLatin1Char('/') + Clock::newIdentifier();
    const QString target = entryFolder + QLatin1Char('/') + QFileInfo(path).fileName();
    const qint64 size = sizeOf(path);
    if (!PrivateFiles::makeFolder(entryFolder)) {
        if (failure)
            *failure = QStringLiteral("\"%1\": %2").arg(entryFolder, QString::fromLocal8Bit(std::strerror(errno)));
        return false;
    }
    const bool moved = ::rename(QFile::encodeName(path).constData(), QFile::encodeName(target).constData()) == 0
        || (errno == EXDEV && copyAcross(path, target));
    if (!moved) {
        if (failure)
            *failure = QStringLiteral("\"%1\": %2").arg(path, QString::fromLocal8Bit(std::strerror(errno)));
        QDir(entryFolder).removeRecursively();
        return false;
    }
    SqlStatement statement(
        m_database.handle(),
        "INSERT OR REPLACE INTO cache_entries(path, user_id, size, added_at) VALUES(?1, ?2, ?3, ?4)");
    if (statement.bind(1, entryFolder).bind(2, userId).bind(3, size).bind(4, Clock::nowMs()).run())
        return true;
    // Unrecorded, the file would stay in the cache unseen: it goes back.
    if (failure)
        *failure = m_database.errorMessage();
    if (::rename(QFile::encodeName(target).constData(), QFile::encodeName(path).constData()) == 0)
        QDir(entryFolder).removeRecursively();
    return false;
}

bool DownloadCache::trim(const QString& userId, qint64 limit)
{
    qint64 total = usage(userId);
    SqlStatement oldest(m_database.handle(),
                        "SELECT path, size FROM cache_entries WHERE user_id = ?1 ORDER BY added_at");
    oldest.bind(1, userId);
    QStringList evicted;
    while (total > limit && oldest.next()) {
        evicted.append(oldest.text(0));
        total -= oldest.integer(1);
    }
    for (const QString& entry : evicted) {
        // Only folders of the cache itself are ever removed here.
        if (!entry.startsWith(m_root + QLatin1Char('/')))
            continue;
        QDir(entry).removeRecursively();
        SqlStatement forget(m_database.handle(), "DELETE FROM cache_entries WHERE path = ?1");
        if (!forget.bind(1, entry).run())
            return false;
    }
    return !oldest.failed();
}

qint64 DownloadCache::usage(const QString& userId)
{
    SqlStatement statement(m_database.handle(), "SELECT coalesce(sum(size), 0) FROM cache_entries WHERE user_id = ?1");
    statement.bind(1, userId);
    return statement.next() ? statement.integer(0) : 0;
}
