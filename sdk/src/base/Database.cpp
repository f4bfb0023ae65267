#include "sdk/base/Database.h"

#include "sdk/base/DatabaseLocation.h"
#include "sdk/base/DatabaseSchema.h"
#include "sdk/base/PrivateFiles.h"
#include "sdk/base/SqlStatement.h"
#include "sdk/base/StoreLog.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

namespace {

QString systemError(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

// Moves a damaged database file and its journal aside, to the first name
// not taken, so that nothing of it is overwritten; that name, or null.
QString setAside(const QString& path)
{
    for (int number = 1; number < 1000; ++number) {
        const QString aside =
            path + (number == 1 ? QStringLiteral(".damaged") : QStringLiteral(".damaged-%1").arg(number));
        if (::renameat2(AT_FDCWD, QFile::encodeName(path).constData(), AT_FDCWD, QFile::encodeName(aside).constData(),
                        RENAME_NOREPLACE)
            != 0) {
            if (errno == EEXIST)
                continue;
            return {};
        }
        ::renameat2(AT_FDCWD, QFile::encodeName(path + QStringLiteral("-wal")).constData(), AT_FDCWD,
                    QFile::encodeName(aside + QStringLiteral("-wal")).constData(), RENAME_NOREPLACE);
        QFile::remove(path + QStringLiteral("-shm"));
        return aside;
    }
    return {};
}

} // namespace

std::unique_ptr<Database> Database::open(const QString& folder, QString* failure)
{
    auto fail = [failure](const QString& reason) {
        if (failure)
            *failure = reason;
        return nullptr;
    };
    if (!PrivateFiles::makeFolder(folder))
        return fail(QStringLiteral("the folder %1 can't be used: %2").arg(folder, systemError(errno)));
    const QString path = folder + QLatin1Char('/') + DatabaseLocation::databaseFileName();
    qCDebug(lcStore, "Opening the database %s", qUtf8Printable(path));
    // Made private before SQLite opens it, so that its journal files, which
    // SQLite creates with the database's permissions, are private too.
    QString notice;
    const int fd = PrivateFiles::createFile(path, true);
    if (fd < 0 && errno != EEXIST)
        return fail(QStringLiteral("the database file %1 can't be opened: %2").arg(path, systemError(errno)));
    if (fd >= 0) {
        ::close(fd);
    } else {
        PrivateFiles::restrict(path, false);
        if (QFileInfo(path).size() == 0 && !QFileInfo::exists(path + QStringLiteral("-wal"))) {
            notice = QStringLiteral("the database file %1 was empty; a new database is made in it").arg(path);
            qCWarning(lcStore, "%s", qUtf8Printable(notice));
        }
    }
    bool damaged = false;
    std::unique_ptr<Database> database = connect(folder, path, failure, &damaged);
    if (damaged) {
        const QString aside = setAside(path);
        if (aside.isNull())
            return fail(QStringLiteral("the database file %1 is damaged and can't be moved aside: %2")
                            .arg(path, systemError(errno)));
        notice = QStringLiteral("the database file %1 was damaged; it is kept as %2 and a new database is made")
                     .arg(path, aside);
        qCWarning(lcStore, "%s", qUtf8Printable(notice));
        const int fresh = PrivateFiles::createFile(path, true);
        if (fresh >= 0)
            ::close(fresh);
        database = connect(folder, path, failure, &damaged);
    }
    if (!database)
        return nullptr;
    database->m_notice = notice;
    return database;
}

std::unique_ptr<Database> Database::connect(const QString& folder, const QString& path, QString* failure, bool* damaged)
{
    *damaged = false;
    sqlite3* handle = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &handle, flags, nullptr) != SQLITE_OK) {
        if (failure)
            *failure = QString::fromUtf8(handle ? sqlite3_errmsg(handle) : "out of memory");
        sqlite3_close(handle);
        return nullptr;
    }
    sqlite3_busy_timeout(handle, 10000);
    std::unique_ptr<Database> database(new Database(handle, folder));
    if (!database->exec("PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL; PRAGMA foreign_keys=ON; PRAGMA "
                        "temp_store=MEMORY; PRAGMA cache_size=-16384;")
        || !DatabaseSchema::create(*database)) {
        const int code = sqlite3_errcode(handle) & 0xff;
        *damaged = code == SQLITE_NOTADB || code == SQLITE_CORRUPT;
        if (failure)
            *failure = database->errorMessage();
        return nullptr;
    }
    return database;
}

Database::Database(sqlite3* handle, const QString& folder)
    : m_handle(handle)
    , m_folder(folder)
{ }

Database::~Database()
{
    sqlite3_close_v2(m_handle);
}

bool Database::exec(const char* sql)
{
    return sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

QString Database::errorMessage() const
{
    return sqlite3_errcode(m_handle) == SQLITE_OK && !m_rolledBackFailure.isEmpty()
        ? m_rolledBackFailure
        : QString::fromUtf8(sqlite3_errmsg(m_handle));
}

bool Database::transaction(const std::function<bool()>& work)
{
    // Inside another transaction this one is a savepoint of it.
    const bool outermost = m_depth == 0;
    const QByteArray savepoint = "SAVEPOINT level" + QByteArray::number(m_depth);
    if (!exec(outermost ? "BEGIN IMMEDIATE" : savepoint.constData()))
        return false;
    ++m_depth;
    if (outermost)
        m_rolledBackFailure.clear();
    const bool done = work();
    --m_depth;
    const QByteArray release = "RELEASE level" + QByteArray::number(m_depth);
    if (done && exec(outermost ? "COMMIT" : release.constData()))
        return true;
    m_rolledBackFailure = QString::fromUtf8(sqlite3_errmsg(m_handle));
    if (outermost) {
        exec("ROLLBACK");
    } else {
        const QByteArray back = "ROLLBACK TO level" + QByteArray::number(m_depth);
        exec(back.constData());
        exec(release.constData());
    }
    return false;
}
