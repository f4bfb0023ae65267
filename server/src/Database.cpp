#include "Database.h"

#include "ServerConfig.h"

#include <QDir>
#include <QFile>
#include <QSqlError>
#include <QSqlQuery>

namespace {
const QString connectionName = QStringLiteral("veluria");
// Any constant shared by all server processes of the installation.
constexpr qint64 migrationLock = 0x56656c7572696131;

bool exec(QSqlQuery& query, const QString& sql, QString* failure)
{
    if (query.exec(sql))
        return true;
    *failure = query.lastError().text();
    return false;
}
} // namespace

bool Database::open(const ServerConfig& config, QString* failure)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), connectionName);
    if (!db.isValid()) {
        *failure = QStringLiteral("Qt's PostgreSQL driver (libqt6sql6-psql) is not installed.");
        return false;
    }
    db.setHostName(config.databaseHost);
    db.setPort(config.databasePort);
    db.setDatabaseName(config.databaseName);
    db.setUserName(config.databaseUser);
    db.setPassword(config.databasePassword);
    if (!db.open()) {
        *failure = QStringLiteral("The database can't be reached: %1").arg(db.lastError().text());
        return false;
    }
    return true;
}

QSqlDatabase Database::connection()
{
    return QSqlDatabase::database(connectionName, false);
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
