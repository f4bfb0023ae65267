#include "MarketCatalogue.h"

#include "Database.h"
#include "EventHub.h"

#include <algorithm>

#include <QJsonArray>
#include <QSet>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

namespace {
QJsonValue stampOrNull(const QVariant& value)
{
    if (value.isNull())
        return QJsonValue::Null;
    return value.toDateTime().toUTC().toString(Qt::ISODateWithMs);
}

QJsonValue textOrNull(const QVariant& value)
{
    return value.isNull() ? QJsonValue(QJsonValue::Null) : QJsonValue(value.toString());
}
} // namespace

QString MarketCatalogue::coveredInstallers()
{
    return QStringLiteral("SELECT l.installer_id FROM installer_products l JOIN purchases p ON p.product_id = "
                          "l.product_id WHERE p.user_id = ?");
}

QString MarketCatalogue::buyersOfInstaller()
{
    return QStringLiteral("SELECT p.user_id FROM purchases p JOIN installer_products l ON l.product_id = "
                          "p.product_id WHERE l.installer_id = ?");
}

std::optional<QJsonObject> MarketCatalogue::read(const QString& userId, const QString& machineId, const QString& host)
{
    QSqlDatabase db = Database::connection();
    // One snapshot: a purchase granted in the middle can't show half.
    db.transaction();
    QSqlQuery set(db);
    set.exec(QStringLiteral("SET TRANSACTION ISOLATION LEVEL REPEATABLE READ"));
    auto failed = [&db]() -> std::optional<QJsonObject> {
        db.rollback();
        return std::nullopt;
    };

    QSet<QString> productIds;
    QSqlQuery purchases(db);
    purchases.prepare(QStringLiteral("SELECT id, product_id, renews_at, canceled, payment_type, cc_expires_on, "
                                     "manage_url FROM purchases WHERE user_id = ? ORDER BY created_at, id"));
    purchases.addBindValue(userId);
    if (!purchases.exec())
        return failed();
    QJsonArray purchaseList;
    while (purchases.next()) {
        const QString id = purchases.value(0).toString();
        const QString manage = purchases.value(6).toString();
        productIds.insert(purchases.value(1).toString());
        purchaseList.append(
            QJsonObject{{QStringLiteral("id"), id},
                        {QStringLiteral("product"), purchases.value(1).toString()},
                        {QStringLiteral("renewsAt"), stampOrNull(purchases.value(2))},
                        {QStringLiteral("canceled"), purchases.value(3).toBool()},
                        {QStringLiteral("paymentType"), purchases.value(4).toString()},
                        {QStringLiteral("ccExpiresOn"), stampOrNull(purchases.value(5))},
                        {QStringLiteral("manageURL"),
                         manage.isEmpty() ? QStringLiteral("https://%1/purchases/%2").arg(host, id) : manage}});
    }

    QSqlQuery installers(db);
    installers.prepare(
        QStringLiteral(
            "SELECT i.id, i.name, i.image_url, encode(sha256(i.image), 'hex'), "
            "(SELECT string_agg(product_id::text, ' ' ORDER BY position) FROM installer_products WHERE installer_id = "
            "i.id), r.id, r.version, r.file_name, r.size, r.sha256, here.installer_id IS NOT NULL, here.revision_id, "
            "here.version, EXISTS (SELECT 1 FROM installs a WHERE a.user_id = ? AND a.installer_id = i.id) "
            "FROM installers i "
            "LEFT JOIN installer_revisions r ON r.installer_id = i.id AND r.number = (SELECT max(number) FROM "
            "installer_revisions WHERE installer_id = i.id) "
            "LEFT JOIN installs here ON here.installer_id = i.id AND here.user_id = ? AND here.machine_id = ? "
            "WHERE i.id IN (%1) ORDER BY i.name, i.id")
            .arg(coveredInstallers()));
    installers.addBindValue(userId);
    installers.addBindValue(userId);
    installers.addBindValue(machineId);
    installers.addBindValue(userId);
    if (!installers.exec())
        return failed();
    QJsonArray installerList;
    while (installers.next()) {
        const QStringList products = installers.value(4).toString().split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (const QString& id : products)
            productIds.insert(id);
        QJsonObject installer{{QStringLiteral("id"), installers.value(0).toString()},
                              {QStringLiteral("name"), installers.value(1).toString()},
                              {QStringLiteral("imageURL"), textOrNull(installers.value(2))},
                              {QStringLiteral("image"), textOrNull(installers.value(3))},
                              {QStringLiteral("products"), QJsonArray::fromStringList(products)},
                              {QStringLiteral("currentRevision"), QJsonValue::Null},
                              {QStringLiteral("installedHere"), QJsonValue::Null},
                              {QStringLiteral("installedAnywhere"), installers.value(13).toBool()}};
        if (!installers.value(5).isNull())
            installer.insert(QStringLiteral("currentRevision"),
                             QJsonObject{{QStringLiteral("id"), installers.value(5).toString()},
                                         {QStringLiteral("version"), textOrNull(installers.value(6))},
                                         {QStringLiteral("fileName"), installers.value(7).toString()},
                                         {QStringLiteral("size"), installers.value(8).toLongLong()},
                                         {QStringLiteral("sha256"), installers.value(9).toString()}});
        if (installers.value(10).toBool())
            installer.insert(QStringLiteral("installedHere"),
                             QJsonObject{{QStringLiteral("revision"), textOrNull(installers.value(11))},
                                         {QStringLiteral("version"), textOrNull(installers.value(12))}});
        installerList.append(installer);
    }

    QSqlQuery products(db);
    products.prepare(QStringLiteral("SELECT p.id, p.name, p.vendor_id, encode(sha256(p.image), 'hex'), v.name FROM "
                                    "products p LEFT JOIN vendors v ON v.id = p.vendor_id WHERE p.id = "
                                    "ANY(string_to_array(?, ' ')::uuid[]) ORDER BY p.name"));
    products.addBindValue(QStringList(productIds.begin(), productIds.end()).join(QLatin1Char(' ')));
    if (!products.exec())
        return failed();
    QJsonArray productList;
    QJsonArray vendorList;
    QSet<QString> vendorIds;
    while (products.next()) {
        const QString vendor = products.value(2).toString();
        productList.append(QJsonObject{{QStringLiteral("id"), products.value(0).toString()},
                                       {QStringLiteral("name"), products.value(1).toString()},
                                       {QStringLiteral("vendor"), textOrNull(products.value(2))},
                                       {QStringLiteral("image"), textOrNull(products.value(3))}});
        if (!vendor.isEmpty() && !vendorIds.contains(vendor)) {
            vendorIds.insert(vendor);
            vendorList.append(
                QJsonObject{{QStringLiteral("id"), vendor}, {QStringLiteral("name"), products.value(4).toString()}});
        }
    }
    db.commit();
    return QJsonObject{{QStringLiteral("vendors"), vendorList},
                       {QStringLiteral("products"), productList},
                       {QStringLiteral("installers"), installerList},
                       {QStringLiteral("purchases"), purchaseList}};
}

QByteArray MarketCatalogue::imageType(const QByteArray& bytes)
{
    if (bytes.startsWith("\x89PNG\r\n"))
        return "image/png";
    if (bytes.startsWith("\xff\xd8\xff"))
        return "image/jpeg";
    if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a"))
        return "image/gif";
    if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP")
        return "image/webp";
    return {};
}

bool MarketCatalogue::changedFor(const QString& userId)
{
    return EventHub::recordForUser(userId, QStringLiteral("catalog"), {});
}

bool MarketCatalogue::changedForBuyersOf(const QString& installerId)
{
    QSqlQuery buyers(Database::connection());
    buyers.prepare(QStringLiteral("SELECT DISTINCT u FROM (%1) AS buyers(u)").arg(buyersOfInstaller()));
    buyers.addBindValue(installerId);
    if (!buyers.exec())
        return false;
    QStringList users;
    while (buyers.next())
        users.append(buyers.value(0).toString());
    return std::all_of(users.begin(), users.end(), [](const QString& user) { return changedFor(user); });
}
