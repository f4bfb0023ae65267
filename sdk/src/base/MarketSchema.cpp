#include "sdk/base/Database.h"
#include "sdk/base/DatabaseSchema.h"

bool DatabaseSchema::createMarket(Database& database)
{
    // Every change of the catalogue moves the catalog's version, so that
    // watching sessions hear of a new revision, a purchase or an install on
    // another client as they hear of publications. An installer's file is a
    // content of the content store; package identifiers are a JSON text.
    // Installs are kept per machine: "installed here" and "installed
    // elsewhere" are different states of the marketplace.
    return database.exec(R"sql(
CREATE TABLE IF NOT EXISTS vendors(
  id TEXT PRIMARY KEY,
  name TEXT NOT NULL UNIQUE);
CREATE TABLE IF NOT EXISTS products(
  id TEXT PRIMARY KEY,
  name TEXT NOT NULL UNIQUE,
  vendor_id TEXT REFERENCES vendors(id) ON DELETE SET NULL,
  image BLOB);
CREATE TABLE IF NOT EXISTS installers(
  id TEXT PRIMARY KEY,
  name TEXT NOT NULL UNIQUE,
  type TEXT NOT NULL DEFAULT '',
  description TEXT NOT NULL DEFAULT '',
  platform TEXT NOT NULL DEFAULT '',
  package_identifiers TEXT NOT NULL DEFAULT '[]',
  silent_install INTEGER NOT NULL DEFAULT 0,
  image BLOB,
  image_url TEXT,
  created_at INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS installer_products(
  installer_id TEXT NOT NULL REFERENCES installers(id) ON DELETE CASCADE,
  product_id TEXT NOT NULL REFERENCES products(id) ON DELETE CASCADE,
  position INTEGER NOT NULL,
  PRIMARY KEY(installer_id, product_id));
CREATE TABLE IF NOT EXISTS installer_revisions(
  id TEXT PRIMARY KEY,
  installer_id TEXT NOT NULL REFERENCES installers(id) ON DELETE CASCADE,
  number INTEGER NOT NULL,
  version TEXT,
  file_name TEXT NOT NULL,
  content TEXT NOT NULL,
  size INTEGER NOT NULL,
  created_at INTEGER NOT NULL,
  UNIQUE(installer_id, number));
CREATE TABLE IF NOT EXISTS purchases(
  id TEXT PRIMARY KEY,
  user_id TEXT NOT NULL REFERENCES users(id) ON DELETE CASCADE,
  product_id TEXT NOT NULL REFERENCES products(id) ON DELETE CASCADE,
  renews_at INTEGER NOT NULL,
  canceled INTEGER NOT NULL DEFAULT 0,
  payment_type TEXT NOT NULL DEFAULT 'credit_card',
  cc_expires_on INTEGER,
  manage_url TEXT,
  created_at INTEGER NOT NULL,
  UNIQUE(user_id, product_id));
CREATE TABLE IF NOT EXISTS installs(
  user_id TEXT NOT NULL REFERENCES users(id) ON DELETE CASCADE,
  installer_id TEXT NOT NULL REFERENCES installers(id) ON DELETE CASCADE,
  machine_id TEXT NOT NULL,
  revision_id TEXT,
  version TEXT,
  installed_at INTEGER NOT NULL,
  PRIMARY KEY(user_id, installer_id, machine_id));
CREATE TRIGGER IF NOT EXISTS vendors_changed AFTER UPDATE ON vendors BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS products_added AFTER INSERT ON products BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS products_changed AFTER UPDATE ON products BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS installers_added AFTER INSERT ON installers BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS installers_changed AFTER UPDATE ON installers BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS installers_removed AFTER DELETE ON installers BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS installer_products_added AFTER INSERT ON installer_products BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS installer_revisions_added AFTER INSERT ON installer_revisions BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS purchases_added AFTER INSERT ON purchases BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS purchases_changed AFTER UPDATE ON purchases BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS purchases_removed AFTER DELETE ON purchases BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS installs_added AFTER INSERT ON installs BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS installs_changed AFTER UPDATE ON installs BEGIN UPDATE catalog SET version = version + 1; END;
CREATE TRIGGER IF NOT EXISTS installs_removed AFTER DELETE ON installs BEGIN UPDATE catalog SET version = version + 1; END;
)sql");
}
