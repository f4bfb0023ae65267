#include "Database.h"

#include "ServerConfig.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QMutex>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QThread>

#include <libpq-fe.h>
#include <poll.h>

namespace {
// Any constant shared by all server processes of the installation.
constexpr qint64 migrationLock = 0x56656c7572696131;
// While PostgreSQL is away, each thread tries again at most this often, so
// that a flood of requests doesn't become a flood of connection attempts.
constexpr qint64 reopenIntervalMs = 500;

struct Settings
{
    QString host;
    int port = 5432;
    QString name;
    QString user;
    QString password;
};

QMutex settingsLock;
Settings settings;

// When each of this thread's connections last tried to open.
thread_local QHash<QString, qint64> lastAttempts;

QString connectionName(const QString& purpose = {})
{
    return QStringLiteral("veluria-%1%2").arg(quintptr(QThread::currentThreadId()), 0, 16).arg(purpose);
}

bool exec(QSqlQuery& query, const QString& sql, QString* failure)
{
    if (query.exec(sql))
        return true;
    *failure = query.lastError().text();
    return false;
}

bool openNow(QSqlDatabase& db, QString* failure)
{
    lastAttempts.insert(db.connectionName(), QDateTime::currentMSecsSinceEpoch());
    if (db.open())
        return true;
    if (failure)
        *failure = QStringLiteral("The database can't be reached: %1").arg(db.lastError().text());
    return false;
}

// The connection as libpq sees it. A server that went away (a restart, an
// administrator ending the session) hung up the socket, which shows before a
// query would fail on it. Nothing is read here: on a LISTEN connection the
// bytes waiting may be a notification for the driver.
bool healthy(const QSqlDatabase& db)
{
    const QVariant handle = db.driver()->handle();
    if (!db.isOpen() || qstrcmp(handle.typeName(), "pg_conn*") != 0)
        return false;
    PGconn* conn = *static_cast<PGconn* const*>(handle.constData());
    if (!conn || PQstatus(conn) != CONNECTION_OK)
        return false;
    pollfd fd{PQsocket(conn), POLLRDHUP, 0};
    return ::poll(&fd, 1, 0) == 0;
}
} // namespace

bool Database::open(const ServerConfig& config, QString* failure)
{
    {
        QMutexLocker locked(&settingsLock);
        settings = {config.databaseHost, config.databasePort, config.databaseName, config.databaseUser,
                    config.databasePassword};
    }
    QSqlDatabase db = connection();
    if (!db.isValid()) {
        *failure = QStringLiteral("Qt's PostgreSQL driver (libqt6sql6-psql) is not installed.");
        return false;
    }
    return db.isOpen() || openNow(db, failure);
}

QSqlDatabase Database::connection()
{
    return connection(QString());
}

QSqlDatabase Database::connection(const QString& purpose)
{
    const QString name = connectionName(purpose);
    QSqlDatabase db = QSqlDatabase::database(name, false);
    if (db.isValid())
        return db;
    db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), name);
    if (!db.isValid())
        return db;
    Settings s;
    {
        QMutexLocker locked(&settingsLock);
        s = settings;
    }
    db.setHostName(s.host);
    db.setPort(s.port);
    db.setDatabaseName(s.name);
    db.setUserName(s.user);
    db.setPassword(s.password);
    // A thread that ends takes its connection with it (worker threads of a
    // pool come and go).
    if (QThread* thread = QThread::currentThread(); thread != QCoreApplication::instance()->thread())
        QObject::connect(
            thread, &QThread::finished, thread, [name] { QSqlDatabase::removeDatabase(name); }, Qt::DirectConnection);
    openNow(db, nullptr);
    return db;
}

bool Database::available()
{
    return available(connection());
}

bool Database::stands(const QSqlDatabase& db)
{
    return db.isValid() && healthy(db);
}

bool Database::available(QSqlDatabase db)
{
    if (!db.isValid())
        return false;
    if (healthy(db))
        return true;
    if (QDateTime::currentMSecsSinceEpoch() - lastAttempts.value(db.connectionName()) < reopenIntervalMs)
        return false;
    db.close();
    return openNow(db, nullptr);
}

bool Database::migrate(QString* failure)
{
    QSqlDatabase db = connection();
    QSqlQuery query(db);
    if (!exec(query, QStringLiteral("SELECT pg_advisory_lock(%1)").arg(migrationLock), failure))
        return false;
    bool ok = exec(query,
                   QStringLiteral("CREATE TABLE IF NOT EXISTS schema_migrations ("
                                  "version integer PRIMARY KEY, applied_at timestamptz NOT NULL DEFAULT now())"),
                   failure);
    const QStringList files =
        QDir(QStringLiteral(":/migrations")).entryList({QStringLiteral("*.sql")}, QDir::Files, QDir::Name);
    for (const QString& name : files) {
        if (!ok)
            break;
        const int version = name.section(QLatin1Char('_'), 0, 0).toInt();
        QSqlQuery seen(db);
        seen.prepare(QStringLiteral("SELECT 1 FROM schema_migrations WHERE version = ?"));
        seen.addBindValue(version);
        if (!seen.exec()) {
            *failure = seen.lastError().text();
            ok = false;
            break;
        }
        if (seen.next())
            continue;
        QFile file(QStringLiteral(":/migrations/") + name);
        file.open(QIODevice::ReadOnly);
        const QString sql = QString::fromUtf8(file.readAll());
        db.transaction();
        QSqlQuery step(db);
        ok = exec(step, sql, failure)
            && exec(step, QStringLiteral("INSERT INTO schema_migrations(version) VALUES (%1)").arg(version), failure);
        if (ok) {
            db.commit();
        } else {
            *failure = QStringLiteral("Migration %1 failed: %2").arg(name, *failure);
            db.rollback();
        }
    }
    QString ignored;
    exec(query, QStringLiteral("SELECT pg_advisory_unlock(%1)").arg(migrationLock), &ignored);
    return ok;
}
