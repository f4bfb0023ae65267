#include "MarketAdmin.h"

#include "BlobStore.h"
#include "Database.h"
#include "MarketCatalogue.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace {
// Pictures and packages come from the store; a picture is kept in the
// database and must stay small.
constexpr qint64 maxImageBytes = 8 * 1024 * 1024;

QJsonObject output(const QString& text)
{
    return {{QStringLiteral("output"), text}};
}

QJsonObject failure(const QString& reason, int code = 422)
{
    return {{QStringLiteral("error"),
             QJsonObject{{QStringLiteral("domain"), QStringLiteral("VLRWebErrorDomain")},
                         {QStringLiteral("code"), code},
                         {QStringLiteral("message"), reason}}}};
}

QJsonObject usage(const QString& command)
{
    return failure(QStringLiteral("wrong arguments for %1; see veluria-admin --help").arg(command), 400);
}

QJsonObject databaseFailure(const QSqlQuery& query)
{
    return failure(query.lastError().text(), 500);
}

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

struct Command
{
    QStringList arguments;
    QJsonObject options;
    QJsonObject files;
    const BlobStore& store;

    QString option(const char* name) const { return options.value(QLatin1String(name)).toString(); }
    // An option's text, empty (not null) when absent.
    QString text(const char* name) const
    {
        const QString value = option(name);
        return value.isNull() ? QStringLiteral("") : value;
    }
    bool flag(const char* name) const { return options.value(QLatin1String(name)).toBool(); }
    // An option that may be given several times.
    QStringList all(const char* name) const
    {
        const QJsonValue value = options.value(QLatin1String(name));
        if (value.isArray()) {
            QStringList list;
            for (const QJsonValue& entry : value.toArray())
                list.append(entry.toString());
            return list;
        }
        return value.toString().isEmpty() ? QStringList() : QStringList{value.toString()};
    }
    // The store's path of a file the command names, or empty.
    QString file(const QString& key) const
    {
        const QString sha256 = files.value(key).toString();
        if (!BlobStore::isDigest(sha256))
            return {};
        const QString path = store.contentPath(sha256);
        return QFileInfo(path).isFile() ? path : QString();
    }
};

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
bool readImage(const Command& command, QByteArray* image, QString* failed)
{
    const QString named = command.option("image");
    if (named.isEmpty())
        return true;
    QFile file(command.file(QStringLiteral("image")));
    if (file.fileName().isEmpty() || file.size() > maxImageBytes || !file.open(QIODevice::ReadOnly)
        || MarketCatalogue::imageType(*image = file.readAll()).isEmpty()) {
        *failed = QStringLiteral("%1 is not a picture").arg(named);
        return false;
    }
    return true;
}

QJsonObject addVendorCommand(const Command& command)
{
    if (command.arguments.size() != 1 || command.arguments.at(0).trimmed().isEmpty())
        return usage(QStringLiteral("add-vendor"));
    QSqlQuery query(Database::connection());
    const QString id = addVendor(command.arguments.at(0).trimmed(), &query);
    return id.isEmpty() ? databaseFailure(query) : output(id + QLatin1Char('\n'));
}

QJsonObject addProductCommand(const Command& command)
{
    if (command.arguments.size() != 1 || command.arguments.at(0).trimmed().isEmpty())
        return usage(QStringLiteral("add-product"));
    QSqlQuery query(Database::connection());
    const QString vendor = command.option("vendor");
    const QString vendorId = vendor.isEmpty() ? QString() : addVendor(vendor, &query);
    if (!vendor.isEmpty() && vendorId.isEmpty())
        return databaseFailure(query);
    QByteArray image;
    QString failed;
    if (!readImage(command, &image, &failed))
        return failure(failed);
    query.prepare(QStringLiteral("INSERT INTO products(name, vendor_id, image) VALUES (?, ?, ?) ON CONFLICT (name) "
                                 "DO UPDATE SET name = EXCLUDED.name RETURNING id"));
    query.addBindValue(command.arguments.at(0).trimmed());
    query.addBindValue(nullable(vendorId));
    query.addBindValue(image.isEmpty() ? QVariant(QMetaType(QMetaType::QByteArray)) : QVariant(image));
    if (!query.exec() || !query.next())
        return databaseFailure(query);
    return output(query.value(0).toString() + QLatin1Char('\n'));
}

QJsonObject addInstallerCommand(const Command& command)
{
    QStringList products;
    for (const QString& product : command.all("product")) {
        const QString id = productId(product);
        if (id.isEmpty())
            return failure(QStringLiteral("no product is called %1").arg(product));
        products.append(id);
    }
    if (command.arguments.size() != 1 || command.arguments.at(0).trimmed().isEmpty() || products.isEmpty())
        return usage(QStringLiteral("add-installer"));
    const QString name = command.arguments.at(0).trimmed();
    QByteArray image;
    QString failed;
    if (!readImage(command, &image, &failed))
        return failure(failed);
    if (!installerId(name).isEmpty())
        return failure(QStringLiteral("an installer is called %1 already").arg(name));
    QSqlDatabase db = Database::connection();
    db.transaction();
    QSqlQuery query(db);
    query.prepare(
        QStringLiteral("INSERT INTO installers(name, description, platform, image) VALUES (?, ?, ?, ?) RETURNING id"));
    query.addBindValue(name);
    // Absent texts are empty, never NULL.
    query.addBindValue(command.text("description"));
    query.addBindValue(command.text("platform"));
    query.addBindValue(image.isEmpty() ? QVariant(QMetaType(QMetaType::QByteArray)) : QVariant(image));
    if (!query.exec() || !query.next()) {
        db.rollback();
        return databaseFailure(query);
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
            return databaseFailure(link);
        }
    }
    // Buyers of its products see it at once, as a new installer.
    if (!MarketCatalogue::changedForBuyersOf(id) || !db.commit()) {
        db.rollback();
        return failure(db.lastError().text(), 500);
    }
    return output(id + QLatin1Char('\n'));
}

QJsonObject publishInstallerCommand(const Command& command)
{
    if (command.arguments.size() != 2)
        return usage(QStringLiteral("publish-installer"));
    const QString installer = installerId(command.arguments.at(0));
    if (installer.isEmpty())
        return failure(QStringLiteral("no installer is called %1").arg(command.arguments.at(0)));
    const QString package = command.file(QStringLiteral("1"));
    if (package.isEmpty())
        return failure(QStringLiteral("%1 is not a file").arg(command.arguments.at(1)));
    QSqlDatabase db = Database::connection();
    db.transaction();
    QSqlQuery query(db);
    query.prepare(QStringLiteral("INSERT INTO installer_revisions(installer_id, number, version, file_name, size, "
                                 "sha256) SELECT ?, coalesce(max(number), 0) + 1, ?, ?, ?, ? FROM installer_revisions "
                                 "WHERE installer_id = ? RETURNING id"));
    query.addBindValue(installer);
    query.addBindValue(nullable(command.option("version")));
    // The file's own name, as the admin's disk had it; a client makes it
    // safe before it touches a disk.
    query.addBindValue(QFileInfo(command.arguments.at(1)).fileName());
    query.addBindValue(QFileInfo(package).size());
    query.addBindValue(command.files.value(QStringLiteral("1")).toString());
    query.addBindValue(installer);
    if (!query.exec() || !query.next()) {
        db.rollback();
        return databaseFailure(query);
    }
    const QString id = query.value(0).toString();
    if (!MarketCatalogue::changedForBuyersOf(installer) || !db.commit()) {
        db.rollback();
        return failure(db.lastError().text(), 500);
    }
    return output(id + QLatin1Char('\n'));
}

QJsonObject grantPurchaseCommand(const Command& command)
{
    const QString renews = command.option("renews");
    const QString card = command.option("card-expires");
    if (command.arguments.size() != 2 || renews.isEmpty())
        return usage(QStringLiteral("grant-purchase"));
    const QDateTime renewsAt = dateOption(renews);
    const QDateTime cardExpires = card.isEmpty() ? QDateTime() : dateOption(card);
    if (!renewsAt.isValid() || (!card.isEmpty() && !cardExpires.isValid()))
        return failure(QStringLiteral("a date is YYYY-MM-DD, or +N or -N days"));
    const QString email = command.arguments.at(0);
    const QString buyer = single("SELECT id FROM users WHERE lower(email) = lower(?)", {email});
    if (buyer.isEmpty())
        return failure(QStringLiteral("no account has the address %1").arg(email), 404);
    const QString product = productId(command.arguments.at(1));
    if (product.isEmpty())
        return failure(QStringLiteral("no product is called %1").arg(command.arguments.at(1)), 404);
    const QString payment = command.option("payment");
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
    query.addBindValue(command.flag("canceled"));
    query.addBindValue(payment.isEmpty() ? QStringLiteral("credit_card") : payment);
    query.addBindValue(cardExpires.isValid() ? QVariant(cardExpires) : QVariant(QMetaType(QMetaType::QDateTime)));
    query.addBindValue(nullable(command.option("manage-url")));
    if (!query.exec() || !query.next()) {
        db.rollback();
        return databaseFailure(query);
    }
    const QString id = query.value(0).toString();
    if (!MarketCatalogue::changedFor(buyer) || !db.commit()) {
        db.rollback();
        return failure(db.lastError().text(), 500);
    }
    return output(id + QLatin1Char('\n'));
}

// What the purchases of an account cover; installs are told as this
// machine's when the command names the machine it runs on.
QJsonObject installersCommand(const Command& command)
{
    if (command.arguments.size() != 1)
        return usage(QStringLiteral("installers"));
    const QString email = command.arguments.at(0);
    const QString buyer = single("SELECT id FROM users WHERE lower(email) = lower(?)", {email});
    if (buyer.isEmpty())
        return failure(QStringLiteral("no account has the address %1").arg(email), 404);
    const auto catalogue = MarketCatalogue::read(buyer, command.option("machine"), QStringLiteral("localhost"));
    if (!catalogue)
        return failure(QStringLiteral("The server's database failed."), 500);
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
    return output(text);
}

using Handler = QJsonObject (*)(const Command&);
const QHash<QString, Handler>& commands()
{
    static const QHash<QString, Handler> table{
        {QStringLiteral("add-vendor"), addVendorCommand},
        {QStringLiteral("add-product"), addProductCommand},
        {QStringLiteral("add-installer"), addInstallerCommand},
        {QStringLiteral("publish-installer"), publishInstallerCommand},
        {QStringLiteral("grant-purchase"), grantPurchaseCommand},
        {QStringLiteral("installers"), installersCommand},
    };
    return table;
}
} // namespace

bool MarketAdmin::handles(const QString& command)
{
    return commands().contains(command);
}

QJsonObject MarketAdmin::run(const QString& command, const QJsonObject& body, const BlobStore& store)
{
    const Handler handler = commands().value(command);
    if (!handler)
        return failure(QStringLiteral("unknown command %1").arg(command), 404);
    QStringList arguments;
    for (const QJsonValue& value : body.value(QStringLiteral("arguments")).toArray())
        arguments.append(value.toString());
    return handler(Command{arguments, body.value(QStringLiteral("options")).toObject(),
                           body.value(QStringLiteral("files")).toObject(), store});
}
