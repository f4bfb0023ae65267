#include "MarketAdmin.h"

#include "AdminCommands.h"
#include "AdminLookup.h"
#include "Database.h"
#include "MarketCatalogue.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QSqlQuery>
#include <QVariant>

namespace {
// Pictures and packages come from the store; a picture is kept in the
// database and must stay small.
constexpr qint64 maxImageBytes = 8 * 1024 * 1024;

// YYYY-MM-DD at noon UTC, or a number of days from now; null when neither.
QDateTime dateOption(const QString& text)
{
    if (text.startsWith(QLatin1Char('+')) || text.startsWith(QLatin1Char('-'))) {
        bool ok = false;
        const qint64 days = text.toLongLong(&ok);
        return ok ? QDateTime::currentDateTimeUtc().addDays(days) : QDateTime();
    }
    const QDate date = QDate::fromString(text, Qt::ISODate);
    return date.isValid() ? QDateTime(date, QTime(12, 0), Qt::UTC) : QDateTime();
}

QVariant nullable(const QString& text, QMetaType::Type type = QMetaType::QString)
{
    return text.isEmpty() ? QVariant(QMetaType(type)) : QVariant(text);
}

QString single(const char* sql, const QVariantList& values)
{
    QSqlQuery query(Database::connection());
    query.prepare(QString::fromLatin1(sql));
    for (const QVariant& value : values)
        query.addBindValue(value);
    return query.exec() && query.next() ? query.value(0).toString() : QString();
}

QString productId(const QString& idOrName)
{
    return single("SELECT id FROM products WHERE id::text = ? OR name = ? ORDER BY id::text = ? DESC LIMIT 1",
                  {idOrName, idOrName, idOrName});
}

QString installerId(const QString& idOrName)
{
    return single("SELECT id FROM installers WHERE id::text = ? OR name = ? ORDER BY id::text = ? DESC LIMIT 1",
                  {idOrName, idOrName, idOrName});
}

// A name that is taken keeps its record: the identifier comes back.
QString addVendor(const QString& name, QSqlQuery* query)
{
    query->prepare(QStringLiteral("INSERT INTO vendors(name) VALUES (?) ON CONFLICT (name) DO UPDATE SET name = "
                                  "EXCLUDED.name RETURNING id"));
    query->addBindValue(name);
    return query->exec() && query->next() ? query->value(0).toString() : QString();
}

// The picture named by an option, or a failure message.
bool readImage(const AdminCall& call, QByteArray* image, QString* failed)
{
    const QString named = call.option(QStringLiteral("image"));
    if (named.isEmpty())
        return true;
    QFile file(call.file(QStringLiteral("image")));
    if (file.fileName().isEmpty() || file.size() > maxImageBytes || !file.open(QIODevice::ReadOnly)
        || MarketCatalogue::imageType(*image = file.readAll()).isEmpty()) {
        *failed = QStringLiteral("%1 is not a picture").arg(named);
        return false;
    }
    return true;
}

AdminOutcome addVendorCommand(const AdminCall& call)
{
    if (call.arguments.size() != 1 || call.arguments.at(0).trimmed().isEmpty())
        return AdminOutcome::usage();
    QSqlQuery query(Database::connection());
    const QString id = addVendor(call.arguments.at(0).trimmed(), &query);
    return id.isEmpty() ? AdminOutcome::databaseFailed() : AdminOutcome::printed(id + QLatin1Char('\n'));
}

AdminOutcome addProductCommand(const AdminCall& call)
{
    if (call.arguments.size() != 1 || call.arguments.at(0).trimmed().isEmpty())
        return AdminOutcome::usage();
    QSqlQuery query(Database::connection());
    const QString vendor = call.option(QStringLiteral("vendor"));
    const QString vendorId = vendor.isEmpty() ? QString() : addVendor(vendor, &query);
    if (!vendor.isEmpty() && vendorId.isEmpty())
        return AdminOutcome::databaseFailed();
    QByteArray image;
    QString failed;
    if (!readImage(call, &image, &failed))
        return AdminOutcome::failed(failed);
    query.prepare(QStringLiteral("INSERT INTO products(name, vendor_id, image) VALUES (?, ?, ?) ON CONFLICT (name) "
                                 "DO UPDATE SET name = EXCLUDED.name RETURNING id"));
    query.addBindValue(call.arguments.at(0).trimmed());
    query.addBindValue(nullable(vendorId));
    query.addBindValue(image.isEmpty() ? QVariant(QMetaType(QMetaType::QByteArray)) : QVariant(image));
    if (!query.exec() || !query.next())
        return AdminOutcome::databaseFailed();
    return AdminOutcome::printed(query.value(0).toString() + QLatin1Char('\n'));
}

AdminOutcome addInstallerCommand(const AdminCall& call)
{
    QStringList products;
    for (const QString& product : call.values(QStringLiteral("product"))) {
        const QString id = productId(product);
        if (id.isEmpty())
            return AdminOutcome::failed(QStringLiteral("no product is called %1").arg(product));
        products.append(id);
    }
    if (call.arguments.size() != 1 || call.arguments.at(0).trimmed().isEmpty() || products.isEmpty())
        return AdminOutcome::usage();
    const QString name = call.arguments.at(0).trimmed();
    QByteArray image;
    QString failed;
    if (!readImage(call, &image, &failed))
        return AdminOutcome::failed(failed);
    if (!installerId(name).isEmpty())
        return AdminOutcome::failed(QStringLiteral("an installer is called %1 already").arg(name));
    QSqlDatabase db = Database::connection();
    db.transaction();
    QSqlQuery query(db);
    query.prepare(
        QStringLiteral("INSERT INTO installers(name, description, platform, image) VALUES (?, ?, ?, ?) RETURNING id"));
    query.addBindValue(name);
    // Absent texts are empty, never NULL.
    query.addBindValue(call.option(QStringLiteral("description")));
    query.addBindValue(call.option(QStringLiteral("platform")));
    query.addBindValue(image.isEmpty() ? QVariant(QMetaType(QMetaType::QByteArray)) : QVariant(image));
    if (!query.exec() || !query.next()) {
        db.rollback();
        return AdminOutcome::databaseFailed();
    }
    const QString id = query.value(0).toString();
    for (qsizetype i = 0; i < products.size(); ++i) {
        QSqlQuery link(db);
        link.prepare(QStringLiteral("INSERT INTO installer_products(installer_id, product_id, position) VALUES (?, ?, "
                                    "?) ON CONFLICT DO NOTHING"));
        link.addBindValue(id);
        link.addBindValue(products.at(i));
        link.addBindValue(int(i));
        if (!link.exec()) {
            db.rollback();
            return AdminOutcome::databaseFailed();
        }
    }
    // Buyers of its products see it at once, as a new installer.
    if (!MarketCatalogue::changedForBuyersOf(id) || !db.commit()) {
        db.rollback();
        return AdminOutcome::databaseFailed();
    }
    return AdminOutcome::printed(id + QLatin1Char('\n'));
}

AdminOutcome publishInstallerCommand(const AdminCall& call)
{
    if (call.arguments.size() != 2)
        return AdminOutcome::usage();
    const QString installer = installerId(call.arguments.at(0));
    if (installer.isEmpty())
        return AdminOutcome::failed(QStringLiteral("no installer is called %1").arg(call.arguments.at(0)));
    const QString package = call.file(QStringLiteral("1"));
    if (package.isEmpty())
        return AdminOutcome::failed(QStringLiteral("%1 is not a file").arg(call.arguments.at(1)));
    QSqlDatabase db = Database::connection();
    db.transaction();
    QSqlQuery query(db);
    query.prepare(QStringLiteral("INSERT INTO installer_revisions(installer_id, number, version, file_name, size, "
                                 "sha256) SELECT ?, coalesce(max(number), 0) + 1, ?, ?, ?, ? FROM installer_revisions "
                                 "WHERE installer_id = ? RETURNING id"));
    query.addBindValue(installer);
    query.addBindValue(nullable(call.option(QStringLiteral("version"))));
    // The file's own name, as the admin's disk had it; a client makes it
    // safe before it touches a disk.
    query.addBindValue(QFileInfo(call.arguments.at(1)).fileName());
    query.addBindValue(QFileInfo(package).size());
    query.addBindValue(call.files.value(QStringLiteral("1")).toString());
    query.addBindValue(installer);
    if (!query.exec() || !query.next()) {
        db.rollback();
        return AdminOutcome::databaseFailed();
    }
    const QString id = query.value(0).toString();
    if (!MarketCatalogue::changedForBuyersOf(installer) || !db.commit()) {
        db.rollback();
        return AdminOutcome::databaseFailed();
    }
    return AdminOutcome::printed(id + QLatin1Char('\n'));
}

AdminOutcome grantPurchaseCommand(const AdminCall& call)
{
    const QString renews = call.option(QStringLiteral("renews"));
    const QString card = call.option(QStringLiteral("card-expires"));
    if (call.arguments.size() != 2 || renews.isEmpty())
        return AdminOutcome::usage();
    const QDateTime renewsAt = dateOption(renews);
    const QDateTime cardExpires = card.isEmpty() ? QDateTime() : dateOption(card);
    if (!renewsAt.isValid() || (!card.isEmpty() && !cardExpires.isValid()))
        return AdminOutcome::failed(QStringLiteral("a date is YYYY-MM-DD, or +N or -N days"));
    AdminOutcome failure;
    const auto account = AdminLookup::account(call.arguments.at(0), &failure);
    if (!account)
        return failure;
    const QString buyer = account->id;
    const QString product = productId(call.arguments.at(1));
    if (product.isEmpty())
        return AdminOutcome::failed(QStringLiteral("no product is called %1").arg(call.arguments.at(1)));
    const QString payment = call.option(QStringLiteral("payment"));
    QSqlDatabase db = Database::connection();
    db.transaction();
    QSqlQuery query(db);
    query.prepare(QStringLiteral(
        "INSERT INTO purchases(user_id, product_id, renews_at, canceled, payment_type, cc_expires_on, manage_url) "
        "VALUES (?, ?, ?, ?, ?, ?, ?) ON CONFLICT (user_id, product_id) DO UPDATE SET renews_at = "
        "EXCLUDED.renews_at, canceled = EXCLUDED.canceled, payment_type = EXCLUDED.payment_type, cc_expires_on = "
        "EXCLUDED.cc_expires_on, manage_url = EXCLUDED.manage_url RETURNING id"));
    query.addBindValue(buyer);
    query.addBindValue(product);
    query.addBindValue(renewsAt);
    query.addBindValue(call.flag(QStringLiteral("canceled")));
    query.addBindValue(payment.isEmpty() ? QStringLiteral("credit_card") : payment);
    query.addBindValue(cardExpires.isValid() ? QVariant(cardExpires) : QVariant(QMetaType(QMetaType::QDateTime)));
    query.addBindValue(nullable(call.option(QStringLiteral("manage-url"))));
    if (!query.exec() || !query.next()) {
        db.rollback();
        return AdminOutcome::databaseFailed();
    }
    const QString id = query.value(0).toString();
    if (!MarketCatalogue::changedFor(buyer) || !db.commit()) {
        db.rollback();
        return AdminOutcome::databaseFailed();
    }
    return AdminOutcome::printed(id + QLatin1Char('\n'));
}

// What the purchases of an account cover; installs are told as this
// machine's when the command names the machine it runs on.
AdminOutcome installersCommand(const AdminCall& call)
{
    if (call.arguments.size() != 1)
        return AdminOutcome::usage();
    AdminOutcome failure;
    const auto account = AdminLookup::account(call.arguments.at(0), &failure);
    if (!account)
        return failure;
    const auto catalogue = MarketCatalogue::read(account->id, call.option(QStringLiteral("machine")), call.host);
    if (!catalogue)
        return AdminOutcome::databaseFailed();
    QString text;
    for (const QJsonValue& entry : catalogue->value(QStringLiteral("installers")).toArray()) {
        const QJsonObject installer = entry.toObject();
        const QString version =
            installer.value(QStringLiteral("currentRevision")).toObject().value(QStringLiteral("version")).toString();
        const QJsonValue here = installer.value(QStringLiteral("installedHere"));
        const QString state = here.isObject()
            ? QStringLiteral("installed %1").arg(here.toObject().value(QStringLiteral("version")).toString())
            : installer.value(QStringLiteral("installedAnywhere")).toBool() ? QStringLiteral("installed elsewhere")
                                                                            : QStringLiteral("new");
        text += installer.value(QStringLiteral("id")).toString() + QStringLiteral("  ")
            + installer.value(QStringLiteral("name")).toString() + QStringLiteral("  ")
            + (version.isEmpty() ? QStringLiteral("-") : version) + QStringLiteral("  ") + state + QLatin1Char('\n');
    }
    return AdminOutcome::printed(text);
}

} // namespace

void MarketAdmin::addTo(AdminCommands& commands)
{
    commands.add(QStringLiteral("add-vendor"), addVendorCommand);
    commands.add(QStringLiteral("add-product"), addProductCommand);
    commands.add(QStringLiteral("add-installer"), addInstallerCommand);
    commands.add(QStringLiteral("publish-installer"), publishInstallerCommand);
    commands.add(QStringLiteral("grant-purchase"), grantPurchaseCommand);
    commands.add(QStringLiteral("installers"), installersCommand);
}
