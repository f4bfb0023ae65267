#include "sdk/market/MarketStore.h"

#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/base/SqlStatement.h"
#include "sdk/store/ContentStore.h"
#include "sdk/store/ResumableCopy.h"

#include <QFile>

namespace {

// Texts of the catalogue are never NULL in the database: absent is empty.
QString orEmpty(const QString& text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace

MarketStore::MarketStore(Database& database)
    : m_database(database)
{ }

QString MarketStore::nameTaken(const char* sql, const QString& name)
{
    SqlStatement find(m_database.handle(), sql);
    find.bind(1, name);
    return find.next() ? find.text(0) : QString();
}

QString MarketStore::addVendor(const QString& name)
{
    if (QString id = nameTaken("SELECT id FROM vendors WHERE name = ?1", name); !id.isNull())
        return id;
    const QString id = Clock::newIdentifier();
    SqlStatement insert(m_database.handle(), "INSERT INTO vendors(id, name) VALUES(?1, ?2)");
    return insert.bind(1, id).bind(2, name).run() ? id : QString();
}

QString MarketStore::addProduct(const QString& name, const QString& vendorId, const QByteArray& image)
{
    if (QString id = nameTaken("SELECT id FROM products WHERE name = ?1", name); !id.isNull())
        return id;
    const QString id = Clock::newIdentifier();
    SqlStatement insert(m_database.handle(), "INSERT INTO products(id, name, vendor_id, image) VALUES(?1, ?2, ?3, ?4)");
    insert.bind(1, id).bind(2, name);
    vendorId.isEmpty() ? insert.bindNull(3) : insert.bind(3, vendorId);
    image.isEmpty() ? insert.bindNull(4) : insert.bindBlob(4, image);
    return insert.run() ? id : QString();
}

bool MarketStore::linkProducts(const QString& installerId, const QStringList& productIds)
{
    SqlStatement clear(m_database.handle(), "DELETE FROM installer_products WHERE installer_id = ?1");
    if (!clear.bind(1, installerId).run())
        return false;
    for (qsizetype i = 0; i < productIds.size(); ++i) {
        SqlStatement link(m_database.handle(),
                          "INSERT OR IGNORE INTO installer_products(installer_id, product_id, position) "
                          "VALUES(?1, ?2, ?3)");
        if (!link.bind(1, installerId).bind(2, productIds.at(i)).bind(3, qint64(i)).run())
            return false;
    }
    return true;
}

QString MarketStore::addInstaller(const InstallerFields& fields, QString* failure)
{
    if (!installerId(fields.name).isNull()) {
        *failure = QStringLiteral("an installer is called %1 already").arg(fields.name);
        return {};
    }
    const QString id = Clock::newIdentifier();
    const bool added = m_database.transaction([&] {
        SqlStatement insert(m_database.handle(),
                            "INSERT INTO installers(id, name, type, description, platform, package_identifiers, "
                            "silent_install, image_url, created_at) VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)");
        insert.bind(1, id).bind(2, fields.name).bind(3, orEmpty(fields.type)).bind(4, orEmpty(fields.description));
        insert.bind(5, orEmpty(fields.platform)).bind(6, fields.packageIdentifiers).bind(7, fields.silentInstall);
        fields.imageUrl.isEmpty() ? insert.bindNull(8) : insert.bind(8, fields.imageUrl);
        insert.bind(9, Clock::nowMs());
        return insert.run() && linkProducts(id, fields.productIds);
    });
    if (!added)
        *failure = m_database.errorMessage();
    return added ? id : QString();
}

bool MarketStore::setInstallerFields(const QString& installerId, const InstallerFields& fields, QString* failure)
{
    const QString holder = this->installerId(fields.name);
    if (!holder.isNull() && holder != installerId) {
        *failure = QStringLiteral("an installer is called %1 already").arg(fields.name);
        return false;
    }
    const bool changed = m_database.transaction([&] {
        SqlStatement update(m_database.handle(),
                            "UPDATE installers SET name = ?2, type = ?3, description = ?4, platform = ?5, "
                            "package_identifiers = ?6, silent_install = ?7, image_url = ?8 WHERE id = ?1");
        update.bind(1, installerId)
            .bind(2, fields.name)
            .bind(3, orEmpty(fields.type))
            .bind(4, orEmpty(fields.description));
        update.bind(5, orEmpty(fields.platform)).bind(6, fields.packageIdentifiers).bind(7, fields.silentInstall);
        fields.imageUrl.isEmpty() ? update.bindNull(8) : update.bind(8, fields.imageUrl);
        return update.run() && linkProducts(installerId, fields.productIds);
    });
    if (!changed)
        *failure = m_database.errorMessage();
    return changed;
}

bool MarketStore::setInstallerImage(const QString& installerId, const QByteArray& image)
{
    SqlStatement update(m_database.handle(), "UPDATE installers SET image = ?2 WHERE id = ?1");
    return update.bind(1, installerId).bindBlob(2, image).run();
}

bool MarketStore::deleteInstaller(const QString& installerId)
{
    SqlStatement remove(m_database.handle(), "DELETE FROM installers WHERE id = ?1");
    return remove.bind(1, installerId).run();
}

QString MarketStore::productId(const QString& idOrName)
{
    return nameTaken("SELECT id FROM products WHERE id = ?1 OR name = ?1 ORDER BY id = ?1 DESC", idOrName);
}

QString MarketStore::installerId(const QString& idOrName)
{
    return nameTaken("SELECT id FROM installers WHERE id = ?1 OR name = ?1 ORDER BY id = ?1 DESC", idOrName);
}

QString MarketStore::installerName(const QString& installerId)
{
    return nameTaken("SELECT name FROM installers WHERE id = ?1", installerId);
}

QByteArray MarketStore::installerImage(const QString& installerId)
{
    SqlStatement find(m_database.handle(),
                      "SELECT coalesce(i.image, (SELECT p.image FROM installer_products l JOIN products p "
                      "ON p.id = l.product_id WHERE l.installer_id = i.id ORDER BY l.position LIMIT 1)) "
                      "FROM installers i WHERE i.id = ?1");
    find.bind(1, installerId);
    return find.next() ? find.blob(0) : QByteArray();
}

QString MarketStore::publishRevision(const QString& installerId, const QString& path, const QString& version,
                                     const QString& fileName, QString* failure)
{
    const ContentStore store(m_database.folder());
    if (!store.prepare(failure))
        return {};
    const QString partial = store.partialPath(Clock::newIdentifier());
    ResumableCopy copy(
        path, partial, [] { return false; }, [](qint64) {});
    if (copy.run() != ResumableCopy::Outcome::Done) {
        QFile::remove(partial);
        *failure = copy.failure();
        return {};
    }
    if (!store.contains(copy.digest()) && !store.commit(partial, copy.digest(), failure)) {
        QFile::remove(partial);
        return {};
    }
    QFile::remove(partial);
    const QString id = Clock::newIdentifier();
    SqlStatement insert(m_database.handle(),
                        "INSERT INTO installer_revisions(id, installer_id, number, version, file_name, content, "
                        "size, created_at) SELECT ?1, ?2, coalesce(max(number), 0) + 1, ?3, ?4, ?5, ?6, ?7 "
                        "FROM installer_revisions WHERE installer_id = ?2");
    insert.bind(1, id).bind(2, installerId);
    version.isEmpty() ? insert.bindNull(3) : insert.bind(3, version);
    insert.bind(4, fileName).bind(5, QString::fromLatin1(copy.digest())).bind(6, copy.size()).bind(7, Clock::nowMs());
    if (!insert.run()) {
        *failure = m_database.errorMessage();
        return {};
    }
    return id;
}

std::optional<MarketStore::Revision> MarketStore::revision(const QString& revisionId)
{
    SqlStatement find(m_database.handle(),
                      "SELECT id, installer_id, number, version, file_name, content, size "
                      "FROM installer_revisions WHERE id = ?1");
    find.bind(1, revisionId);
    if (!find.next())
        return std::nullopt;
    return Revision{find.text(0), find.text(1), find.integer(2), find.text(3),
                    find.text(4), find.text(5), find.integer(6)};
}

QString MarketStore::grantPurchase(const Purchase& purchase)
{
    const QString id = Clock::newIdentifier();
    SqlStatement upsert(m_database.handle(),
                        "INSERT INTO purchases(id, user_id, product_id, renews_at, canceled, payment_type, "
                        "cc_expires_on, manage_url, created_at) VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9) "
                        "ON CONFLICT(user_id, product_id) DO UPDATE SET renews_at = ?4, canceled = ?5, "
                        "payment_type = ?6, cc_expires_on = ?7, manage_url = ?8");
    upsert.bind(1, id).bind(2, purchase.userId).bind(3, purchase.productId).bind(4, purchase.renewsAt);
    upsert.bind(5, purchase.canceled).bind(6, orEmpty(purchase.paymentType));
    purchase.ccExpiresOn ? upsert.bind(7, purchase.ccExpiresOn) : upsert.bindNull(7);
    purchase.manageUrl.isEmpty() ? upsert.bindNull(8) : upsert.bind(8, purchase.manageUrl);
    upsert.bind(9, Clock::nowMs());
    if (!upsert.run())
        return {};
    SqlStatement find(m_database.handle(), "SELECT id FROM purchases WHERE user_id = ?1 AND product_id = ?2");
    find.bind(1, purchase.userId).bind(2, purchase.productId);
    return find.next() ? find.text(0) : QString();
}

bool MarketStore::isEntitled(const QString& userId, const QString& installerId)
{
    SqlStatement find(m_database.handle(),
                      "SELECT 1 FROM purchases p JOIN installer_products l ON l.product_id = p.product_id "
                      "WHERE p.user_id = ?1 AND l.installer_id = ?2");
    find.bind(1, userId).bind(2, installerId);
    return find.next();
}

bool MarketStore::recordInstall(const QString& userId, const QString& installerId, const QString& machineId,
                                const QString& revisionId, const QString& version)
{
    SqlStatement upsert(m_database.handle(),
                        "INSERT INTO installs(user_id, installer_id, machine_id, revision_id, version, installed_at) "
                        "VALUES(?1, ?2, ?3, ?4, ?5, ?6) ON CONFLICT(user_id, installer_id, machine_id) "
                        "DO UPDATE SET revision_id = ?4, version = ?5, installed_at = ?6");
    upsert.bind(1, userId).bind(2, installerId).bind(3, machineId).bind(4, revisionId);
    version.isNull() ? upsert.bindNull(5) : upsert.bind(5, version);
    return upsert.bind(6, Clock::nowMs()).run();
}

bool MarketStore::forgetInstall(const QString& userId, const QString& installerId, const QString& machineId)
{
    SqlStatement remove(m_database.handle(),
                        "DELETE FROM installs WHERE user_id = ?1 AND installer_id = ?2 AND machine_id = ?3");
    return remove.bind(1, userId).bind(2, installerId).bind(3, machineId).run();
}
