#pragma once

#include <QString>

#include <functional>
#include <memory>

struct sqlite3;

// One connection to the local service's SQLite database (WAL, so that
// readers and one writer in several threads and processes go together).
// A connection belongs to the thread that uses it.
class Database
{
public:
    // Opens or creates the database in the folder, with its tables; null with
    // the reason in failure when that is not possible. A damaged database
    // file is never written over: it is moved aside, a new one is made, and
    // notice() says so.
    static std::unique_ptr<Database> open(const QString& folder, QString* failure);

    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    ~Database();

    sqlite3* handle() const { return m_handle; }
    const QString& folder() const { return m_folder; }
    // What the opening found and did about it (a damaged or empty file); a
    // null string when all was well.
    const QString& notice() const { return m_notice; }
    bool exec(const char* sql);
    QString errorMessage() const;
    // Runs the work in one write transaction; rolled back when it answers
    // false or the commit fails. Transactions nest.
    bool transaction(const std::function<bool()>& work);

private:
    Database(sqlite3* handle, const QString& folder);
    static std::unique_ptr<Database> connect(const QString& folder, const QString& path, QString* failure,
                                             bool* damaged);

    sqlite3* m_handle;
    QString m_folder;
    QString m_notice;
    // What made the last transaction fail, kept past its rollback.
    QString m_rolledBackFailure;
    int m_depth = 0;
};
