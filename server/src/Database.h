#pragma once

#include <QSqlDatabase>
#include <QString>

struct ServerConfig;

// Connections to PostgreSQL, one per thread (a QSqlDatabase may only be used
// on the thread that opened it), each opened on first use with the same
// settings and closed when its thread ends. A connection that PostgreSQL
// dropped (a restart, a failover) is noticed before a request uses it and
// opened anew. Also the schema's migrations: the numbered files under
// :/migrations, each applied once, in order, in a transaction of its own
// that also records it in schema_migrations.
class Database
{
public:
    // Remembers the settings for every thread and opens this thread's connection.
    static bool open(const ServerConfig& config, QString* failure);
    // This thread's connection, opened if it wasn't; it may be closed when
    // the database can't be reached.
    static QSqlDatabase connection();
    // A second connection of this thread kept for one purpose (LISTEN, whose
    // notifications must not be read by anybody else).
    static QSqlDatabase connection(const QString& purpose);
    // True when the connection stands, reopening it if PostgreSQL dropped
    // it. Cheap: no round trip while the connection is healthy.
    static bool available();
    static bool available(QSqlDatabase db);
    // Whether the connection stands, without opening it again.
    static bool stands(const QSqlDatabase& db);
    // Several processes may start at once: an advisory lock lets one migrate
    // while the others wait.
    static bool migrate(QString* failure);
};
