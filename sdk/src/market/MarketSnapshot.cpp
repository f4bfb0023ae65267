#include "sdk/market/MarketSnapshot.h"

#include "sdk/base/Database.h"
#include "sdk/base/SqlStatement.h"
#include "sdk/installs/Applications.h"
#include "sdk/market/MarketPages.h"

#include <QSet>

std::optional<MarketSnapshot> MarketSnapshot::read(Database& database, const QString& userId, const QString& machineId)
{
    MarketSnapshot snapshot;
    SqlStatement purchases(database.handle(),
                           "SELECT pu.id, pu.product_id, pu.renews_at, pu.canceled, pu.payment_type, "
                           "pu.cc_expires_on, pu.manage_url, pr.name FROM purchases pu JOIN products pr "
                           "ON pr.id = pu.product_id WHERE pu.user_id = ?1 ORDER BY pu.created_at, pu.rowid");
    purchases.bind(1, userId);
    while (purchases.next()) {
        Purchase purchase{purchases.text(0), purchases.text(1),    purchases.integer(2), purchases.integer(3) != 0,
                          purchases.text(4), purchases.integer(5), purchases.text(6)};
        if (purchase.manageUrl.isEmpty())
            purchase.manageUrl = MarketPages::managePage(database.folder(), purchase.id, purchases.text(7),
                                                         purchase.renewsAt, purchase.canceled, purchase.ccExpiresOn)
                                     .toString();
        snapshot.purchases.append(purchase);
    }

    // The installers that the user's purchases cover, each with its newest
    // revision and the user's installs.
    SqlStatement installers(
        database.handle(),
        "SELECT i.id, i.name, i.image_url, i.image, r.id, r.version, "
        "(SELECT group_concat(product_id, ' ') FROM (SELECT product_id FROM installer_products "
        " WHERE installer_id = i.id ORDER BY position)), "
        "here.revision_id, here.version, here.installer_id IS NOT NULL, "
        "EXISTS(SELECT 1 FROM installs a WHERE a.user_id = ?1 AND a.installer_id = i.id) "
        "FROM installers i "
        "LEFT JOIN installer_revisions r ON r.installer_id = i.id AND r.number = "
        " (SELECT max(number) FROM installer_revisions WHERE installer_id = i.id) "
        "LEFT JOIN installs here ON here.installer_id = i.id AND here.user_id = ?1 AND here.machine_id = ?2 "
        "WHERE i.id IN (SELECT l.installer_id FROM installer_products l JOIN purchases p "
        " ON p.product_id = l.product_id WHERE p.user_id = ?1) "
        "ORDER BY i.name, i.id");
    installers.bind(1, userId).bind(2, machineId);
    while (installers.next()) {
        Installer installer;
        installer.id = installers.text(0);
        installer.name = installers.text(1);
        installer.imageUrl = installers.text(2);
        installer.image = installers.blob(3);
        installer.revisionId = installers.text(4);
        installer.version = installers.text(5);
        installer.productIds = installers.text(6).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        installer.installedHere = installers.integer(9) != 0 && Applications::isPresent(installer.id);
        if (installer.installedHere) {
            installer.installedRevisionId = installers.text(7);
            installer.installedVersion = installers.text(8);
        }
        installer.installedAnywhere = installers.integer(10) != 0;
        snapshot.installers.append(installer);
    }

    QSet<QString> productIds;
    for (const Purchase& purchase : snapshot.purchases)
        productIds.insert(purchase.productId);
    for (const Installer& installer : snapshot.installers)
        for (const QString& id : installer.productIds)
            productIds.insert(id);
    QSet<QString> vendorIds;
    for (const QString& id : productIds) {
        SqlStatement product(database.handle(), "SELECT id, name, vendor_id, image FROM products WHERE id = ?1");
        product.bind(1, id);
        if (product.next()) {
            snapshot.products.append({product.text(0), product.text(1), product.text(2), product.blob(3)});
            if (!product.text(2).isEmpty())
                vendorIds.insert(product.text(2));
        }
        if (product.failed())
            return std::nullopt;
    }
    for (const QString& id : vendorIds) {
        SqlStatement vendor(database.handle(), "SELECT id, name FROM vendors WHERE id = ?1");
        vendor.bind(1, id);
        if (vendor.next())
            snapshot.vendors.append({vendor.text(0), vendor.text(1)});
    }
    if (purchases.failed() || installers.failed())
        return std::nullopt;
    return snapshot;
}
