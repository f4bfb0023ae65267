#include "sdk/base/SqlStatement.h"

#include <sqlite3.h>

SqlStatement::SqlStatement(sqlite3* database, const char* sql)
{
    if (sqlite3_prepare_v2(database, sql, -1, &m_statement, nullptr) != SQLITE_OK) {
        sqlite3_finalize(m_statement);
        m_statement = nullptr;
        m_failed = true;
    }
}

SqlStatement::~SqlStatement()
{
    sqlite3_finalize(m_statement);
}

SqlStatement& SqlStatement::bind(int index, const QString& value)
{
    if (value.isNull())
        return bindNull(index);
    const QByteArray utf8 = value.toUtf8();
    if (m_statement)
        sqlite3_bind_text(m_statement, index, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
    return *this;
}

SqlStatement& SqlStatement::bind(int index, qint64 value)
{
    if (m_statement)
        sqlite3_bind_int64(m_statement, index, value);
    return *this;
}

SqlStatement& SqlStatement::bind(int index, double value)
{
    if (m_statement)
        sqlite3_bind_double(m_statement, index, value);
    return *this;
}

SqlStatement& SqlStatement::bindBlob(int index, const QByteArray& value)
{
    if (value.isNull())
        return bindNull(index);
    if (m_statement)
        sqlite3_bind_blob(m_statement, index, value.constData(), int(value.size()), SQLITE_TRANSIENT);
    return *this;
}

SqlStatement& SqlStatement::bindNull(int index)
{
    if (m_statement)
        sqlite3_bind_null(m_statement, index);
    return *this;
}

bool SqlStatement::next()
{
    if (!m_statement)
        return false;
    const int result = sqlite3_step(m_statement);
    if (result == SQLITE_ROW)
        return true;
    if (result != SQLITE_DONE)
        m_failed = true;
    return false;
}

bool SqlStatement::run()
{
    while (next()) { }
    return !m_failed;
}

QString SqlStatement::text(int column) const
{
    const auto* data = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
    if (!data)
        return {};
    return QString::fromUtf8(data, sqlite3_column_bytes(m_statement, column));
}

qint64 SqlStatement::integer(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

double SqlStatement::real(int column) const
{
    return sqlite3_column_double(m_statement, column);
}

QByteArray SqlStatement::blob(int column) const
{
    const auto* data = static_cast<const char*>(sqlite3_column_blob(m_statement, column));
    if (!data)
        return {};
    return QByteArray(data, sqlite3_column_bytes(m_statement, column));
}

bool SqlStatement::isNull(int column) const
{
    return sqlite3_column_type(m_statement, column) == SQLITE_NULL;
}
