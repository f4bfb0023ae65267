#include "sdk/base/Database.h"

#include "sdk/base/DatabaseLocation.h"
#include "sdk/base/DatabaseSchema.h"
#include "sdk/base/PrivateFiles.h"
#include "sdk/base/SqlStatement.h"
#include "sdk/base/StoreLog.h"

#include <QFile>

#include <sqlite3.h>
#include <unistd.h>

std::unique_ptr<Database> Database::open(const QString& folder, QString* failure)
{
    if (!PrivateFiles::makeFolder(folder)) {
        if (failure)
            *failure = QStringLiteral("the folder %1 can't be created").arg(folder);
        return nullptr;
    }
    const QString path = folder + QLatin1Char('/') + DatabaseLocation::databaseFileName();
    qCDebug(lcStore, "Opening the database %s", qUtf8Printable(path));
    // Made private before SQLite opens it, so that its journal files, which
    // SQLite creates with the database's permissions, are private too.
    const int fd = PrivateFiles::createFile(path, true);
    if (fd >= 0)
        ::close(fd);
    else
        PrivateFiles::restrict(path, false);
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
