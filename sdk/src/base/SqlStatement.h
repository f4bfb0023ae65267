#pragma once

#include <QByteArray>
#include <QString>

struct sqlite3;
struct sqlite3_stmt;

// One prepared statement: parameters bound by position from 1, columns read
// by position from 0. Finalised when it goes.
class SqlStatement
{
public:
    SqlStatement(sqlite3* database, const char* sql);
    SqlStatement(const SqlStatement&) = delete;
    SqlStatement& operator=(const SqlStatement&) = delete;
    ~SqlStatement();

    bool isValid() const { return m_statement != nullptr; }

    SqlStatement& bind(int index, const QString& value);
    SqlStatement& bind(int index, qint64 value);
    SqlStatement& bind(int index, int value) { return bind(index, qint64(value)); }
    SqlStatement& bind(int index, bool value) { return bind(index, qint64(value)); }
    SqlStatement& bind(int index, double value);
    SqlStatement& bindBlob(int index, const QByteArray& value);
    SqlStatement& bindNull(int index);

    // True while there is a row to read; false at the end and on failure
    // (failed() then says so).
    bool next();
    // Runs a statement without rows; false on failure.
    bool run();
    bool failed() const { return m_failed; }

    QString text(int column) const;
    qint64 integer(int column) const;
    double real(int column) const;
    QByteArray blob(int column) const;
    bool isNull(int column) const;

private:
    sqlite3_stmt* m_statement = nullptr;
    bool m_failed = false;
};
