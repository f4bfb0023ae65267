#include "sdk/base/DatabaseSchema.h"

#include "sdk/base/Database.h"
#include "sdk/base/SqlStatement.h"

bool DatabaseSchema::create(Database& database)
{
    // The catalog's version moves with every change that a session shows
    // (workspaces, members, files, publications, names), so that watching
    // sessions read one number, not the tables, to know whether to reload.
    // Assets are the files of a workspace, revisions their successive
    // contents (a content-store hash), publications what members announce:
    // a revision with its text, or a text alone.
    return database.exec(R"sql(
CREATE TABLE IF NOT EXISTS users(
  id TEXT PRIMARY KEY,
  email TEXT NOT NULL UNIQUE COLLATE NOCASE,
  first_name TEXT NOT NULL DEFAULT '',
  last_name TEXT NOT NULL DEFAULT '',
  password_hash TEXT NOT NULL,
  password_version INTEGER NOT NULL DEFAULT 1,
  needs_confirmation INTEGER NOT NULL DEFAULT 0,
  totp_secret TEXT,
  totp_last_step INTEGER NOT NULL DEFAULT 0,
  avatar BLOB,
  download_cache_size INTEGER NOT NULL DEFAULT 1000000000,
  created_at INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS workspaces(
  id TEXT PRIMARY KEY,
  name TEXT NOT NULL,
  created_at INTEGER NOT NULL,
  updated_at INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS members(
  workspace_id TEXT NOT NULL REFERENCES workspaces(id) ON DELETE CASCADE,
  user_id TEXT NOT NULL REFERENCES users(id) ON DELETE CASCADE,
  role INTEGER NOT NULL,
  joined_at INTEGER NOT NULL,
  PRIMARY KEY(workspace_id, user_id));
CREATE INDEX IF NOT EXISTS members_by_user ON members(user_id);
CREATE TABLE IF NOT EXISTS assets(
  id TEXT PRIMARY KEY,
  workspace_id TEXT NOT NULL REFERENCES workspaces(id) ON DELETE CASCADE,
  name TEXT NOT NULL,
  UNIQUE(workspace_id, name));
CREATE TABLE IF NOT EXISTS revisions(
  id TEXT PRIMARY KEY,
  asset_id TEXT NOT NULL REFERENCES assets(id) ON DELETE CASCADE,
  number INTEGER NOT NULL,
  content TEXT NOT NULL,
  is_folder INTEGER NOT NULL DEFAULT 0,
  size INTEGER NOT NULL,
  author_id TEXT NOT NULL,
  created_at INTEGER NOT NULL,
  UNIQUE(asset_id, number));
CREATE TABLE IF NOT EXISTS publications(
  seq INTEGER PRIMARY KEY AUTOINCREMENT,
  workspace_id TEXT NOT NULL REFERENCES workspaces(id) ON DELETE CASCADE,
  user_id TEXT NOT NULL,
  revision_id TEXT REFERENCES revisions(id) ON DELETE SET NULL,
  text TEXT NOT NULL,
  created_at INTEGER NOT NULL);
CREATE INDEX IF NOT EXISTS publications_by_workspace ON publications(workspace_id, seq);
CREATE TABLE IF NOT EXISTS transfers(
  id TEXT PRIMARY KEY,
  user_id TEXT NOT NULL,
  type INTEGER NOT NULL,
  sub_type INTEGER NOT NULL,
  position REAL NOT NULL,
  finished INTEGER NOT NULL DEFAULT 0,
  paused INTEGER NOT NULL DEFAULT 0,
  file_path TEXT NOT NULL,
  total_size INTEGER NOT NULL,
  workspace_id TEXT,
  revision_id TEXT,
  text TEXT,
  error_domain TEXT,
  error_code INTEGER,
  error_text TEXT,
  created_at INTEGER NOT NULL,
  finished_at INTEGER,
  upload_id TEXT);
CREATE INDEX IF NOT EXISTS transfers_by_user ON transfers(user_id, finished, position);
CREATE TABLE IF NOT EXISTS downloads(
  user_id TEXT NOT NULL,
  asset_id TEXT NOT NULL,
  revision_id TEXT NOT NULL,
  path TEXT NOT NULL,
  PRIMARY KEY(user_id, path));
CREATE INDEX IF NOT EXISTS downloads_by_asset ON downloads(asset_id);
CREATE TABLE IF NOT EXISTS cache_entries(
  path TEXT PRIMARY KEY,
  user_id TEXT NOT NULL,
  size INTEGER NOT NULL,
  added_at INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS catalog(version INTEGER NOT NULL);
INSERT INTO catalog(version) SELECT 0 WHERE NOT EXISTS(SELECT 1 FROM catalog);
CREATE TRIGGER IF NOT EXISTS workspaces_added AFTER INSERT ON workspaces BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS workspaces_changed AFTER UPDATE ON workspaces BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS workspaces_removed AFTER DELETE ON workspaces BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS members_added AFTER INSERT ON members BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS members_changed AFTER UPDATE ON members BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS members_removed AFTER DELETE ON members BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS assets_added AFTER INSERT ON assets BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS publications_added AFTER INSERT ON publications BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS users_changed AFTER UPDATE OF email, first_name, last_name, avatar, needs_confirmation ON users
  BEGIN UPDATE catalog SET version = version + 1; END;
PRAGMA user_version = 1;
)sql") && addUploadIds(database)
        && createMarket(database);
}

// Databases made before transfers could go to a team server lack the
// column that keeps an upload's id there. Two processes may open an old
// file at once: the change is made in a write transaction that looks again.
bool DatabaseSchema::addUploadIds(Database& database)
{
    auto hasColumn = [&] {
        SqlStatement column(database.handle(), "SELECT 1 FROM pragma_table_info('transfers') WHERE name = 'upload_id'");
        return column.next();
    };
    if (hasColumn())
        return true;
    return database.transaction(
        [&] { return hasColumn() || database.exec("ALTER TABLE transfers ADD COLUMN upload_id TEXT"); });
}
