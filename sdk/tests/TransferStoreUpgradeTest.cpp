#include "sdk/base/Database.h"
#include "sdk/base/DatabaseLocation.h"
#include "sdk/transfers/TransferStore.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sqlite3.h>

// A database made before uploads could go to a team server opens with its
// queued transfers, and keeps an upload's id from then on.
TEST(TransferStoreUpgrade, OldDatabaseKeepsItsTransfersAndGainsUploadIds)
{
    QTemporaryDir folder;
    sqlite3* old = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(folder.filePath(DatabaseLocation::databaseFileName())).constData(), &old),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(old,
                           "CREATE TABLE transfers(id TEXT PRIMARY KEY, user_id TEXT NOT NULL, type INTEGER NOT NULL, "
                           "sub_type INTEGER NOT NULL, position REAL NOT NULL, finished INTEGER NOT NULL DEFAULT 0, "
                           "paused INTEGER NOT NULL DEFAULT 0, file_path TEXT NOT NULL, total_size INTEGER NOT NULL, "
                           "workspace_id TEXT, revision_id TEXT, text TEXT, error_domain TEXT, error_code INTEGER, "
                           "error_text TEXT, created_at INTEGER NOT NULL, finished_at INTEGER);"
                           "INSERT INTO transfers(id, user_id, type, sub_type, position, file_path, total_size, "
                           "created_at) VALUES('t1', 'u1', 1, 0, 1, '/home/ann/a.bin', 5, 1);",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(old);

    QString failure;
    auto database = Database::open(folder.path(), &failure);
    ASSERT_TRUE(database) << failure.toStdString();
    TransferStore store(*database);
    auto queued = store.load(QStringLiteral("u1"), false);
    ASSERT_TRUE(queued);
    ASSERT_EQ(queued->size(), 1);
    EXPECT_EQ(queued->first().filePath, QStringLiteral("/home/ann/a.bin"));
    EXPECT_TRUE(queued->first().uploadId.isEmpty());

    TransferJob job = queued->first();
    job.uploadId = QStringLiteral("8d0c3bd4-4f3e-4d43-9d8f-3a1f0e2b6c11");
    ASSERT_TRUE(store.save(job));
    database.reset();
    database = Database::open(folder.path(), &failure);
    ASSERT_TRUE(database) << failure.toStdString();
    EXPECT_EQ(TransferStore(*database).load(QStringLiteral("u1"), false)->first().uploadId, job.uploadId);
}
