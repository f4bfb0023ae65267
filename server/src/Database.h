#pragma once

#include <QSqlDatabase>
#include <QString>

struct ServerConfig;

// The process's one connection to PostgreSQL and its schema's migrations:
// the numbered files under :/migrations, each applied once, in order, in a
// transaction of its own that also records it in schema_migrations.
class Database
{
public:
    static bool open(const ServerConfig& config, QString* failure);
    static QSqlDatabase connection();
    // Several processes may start at once: an advisory lock lets one migrate
    // while the others wait.
    static bool migrate(QString* failure);
};
