#include "MarketApi.h"

#include "Database.h"
#include "MarketCatalogue.h"
#include "RequestContext.h"
#include "TransferApi.h"

#include <QSqlQuery>
#include <QVariant>

using namespace RequestContext;

namespace {
bool isMachine(const QString& id)
{
    return !id.isEmpty() && id.size() <= 128;
}

void nothingHere(HttpConnection* c)
{
    c->respondError(404, 404, QStringLiteral("There is no such thing in your purchases."));
}
} // namespace

MarketApi::MarketApi(const Accounts& accounts, const BlobStore& store)
    : m_accounts(accounts)
    , m_store(store)
{ }

bool MarketApi::handle(HttpConnection* c, const QStringList& path)
{
    const QString what = path.value(0);
    const bool catalogue = path == QStringList{QStringLiteral("catalog")};
    const bool image = (what == QLatin1String("products") || what == QLatin1String("installers")) && path.size() == 3
        && path.value(2) == QLatin1String("image");
    const bool package = what == QLatin1String("packages") && path.size() == 2;
    const bool installs = what == QLatin1String("installs") && path.size() <= 2;
    if (!catalogue && !image && !package && !installs)
        return false;
    QString userId;
    if (!authenticate(m_accounts, c, &userId))
        return true;
    const QByteArray method = c->request().method;
    if (catalogue && method == "GET")
        this->catalogue(c, userId);
    else if (image && method == "GET")
        this->image(c, userId, what, path.value(1));
    else if (package && method == "GET")
        this->package(c, userId, path.value(1));
    else if (installs && path.size() == 1 && method == "POST")
        recordInstall(c, userId);
    else if (installs && path.size() == 2 && method == "DELETE")
        forgetInstall(c, userId, path.value(1));
    else
        methodNotAllowed(c);
    return true;
}

void MarketApi::catalogue(HttpConnection* c, const QString& userId)
{
    QString host = QString::fromUtf8(c->request().header("host"));
    // The host names a page in the answer: it must be a plain host[:port].
    if (host.isEmpty() || host.contains(QLatin1Char('/')) || host.contains(QLatin1Char('@')))
        host = QStringLiteral("localhost");
    const auto catalogue = MarketCatalogue::read(
        userId, c->request().query.queryItemValue(QStringLiteral("machine"), QUrl::FullyDecoded), host);
    if (!catalogue)
        return databaseFailed(c);
    c->respondJson(200, *catalogue);
}

void MarketApi::image(HttpConnection* c, const QString& userId, const QString& table, const QString& segment)
{
    const QString id = uuidOf(segment);
    // A product shows in the catalogue when it is bought or names one of
    // the covered installers; an installer when it is covered.
    const bool product = table == QLatin1String("products");
    const QString sql = product
        ? QStringLiteral("SELECT image FROM products WHERE id = ? AND (id IN (SELECT product_id FROM purchases "
                         "WHERE user_id = ?) OR id IN (SELECT product_id FROM installer_products WHERE installer_id "
                         "IN (%1)))")
        : QStringLiteral("SELECT image FROM installers WHERE id = ? AND id IN (%1)");
    QSqlQuery query(Database::connection());
    query.prepare(sql.arg(MarketCatalogue::coveredInstallers()));
    query.addBindValue(id);
    query.addBindValue(userId);
    if (product)
        query.addBindValue(userId);
    if (id.isEmpty() || !query.exec() || !query.next() || query.value(0).isNull())
        return nothingHere(c);
    const QByteArray bytes = query.value(0).toByteArray();
    c->respond(200, bytes, {{"Cache-Control", "private, max-age=86400"}}, MarketCatalogue::imageType(bytes));
}

void MarketApi::package(HttpConnection* c, const QString& userId, const QString& segment)
{
    const QString id = uuidOf(segment);
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT size, sha256 FROM installer_revisions WHERE id = ? AND installer_id IN (%1)")
                      .arg(MarketCatalogue::coveredInstallers()));
    query.addBindValue(id);
    query.addBindValue(userId);
    if (id.isEmpty() || !query.exec() || !query.next())
        return nothingHere(c);
    TransferApi::serveContent(c, m_store, query.value(0).toLongLong(), query.value(1).toString());
}

void MarketApi::recordInstall(HttpConnection* c, const QString& userId)
{
    QJsonObject body;
    if (!jsonBody(c, &body))
        return;
    const QString installer = uuidOf(body.value(QStringLiteral("installer")).toString());
    const QString revision = uuidOf(body.value(QStringLiteral("revision")).toString());
    const QString machine = body.value(QStringLiteral("machine")).toString();
    if (installer.isEmpty() || revision.isEmpty() || !isMachine(machine))
        return c->respondError(422, 422, QStringLiteral("An install names its installer, revision and machine."));
    QSqlDatabase db = Database::connection();
    db.transaction();
    QSqlQuery upsert(db);
    upsert.prepare(
        QStringLiteral(
            "INSERT INTO installs(user_id, installer_id, machine_id, revision_id, version) SELECT ?, r.installer_id, "
            "?, "
            "r.id, r.version FROM installer_revisions r WHERE r.id = ? AND r.installer_id = ? AND r.installer_id IN "
            "(%1) ON CONFLICT (user_id, installer_id, machine_id) DO UPDATE SET revision_id = EXCLUDED.revision_id, "
            "version = EXCLUDED.version, installed_at = now() RETURNING version")
            .arg(MarketCatalogue::coveredInstallers()));
    upsert.addBindValue(userId);
    upsert.addBindValue(machine);
    upsert.addBindValue(revision);
    upsert.addBindValue(installer);
    upsert.addBindValue(userId);
    if (!upsert.exec()) {
        db.rollback();
        return databaseFailed(c);
    }
    if (!upsert.next()) {
        db.rollback();
        return nothingHere(c);
    }
    const QJsonValue version = upsert.value(0).isNull() ? QJsonValue() : QJsonValue(upsert.value(0).toString());
    if (!MarketCatalogue::changedFor(userId) || !db.commit()) {
        db.rollback();
        return databaseFailed(c);
    }
    c->respondJson(201,
                   {{QStringLiteral("installer"), installer},
                    {QStringLiteral("revision"), revision},
                    {QStringLiteral("version"), version}});
}

void MarketApi::forgetInstall(HttpConnection* c, const QString& userId, const QString& segment)
{
    const QString machine = c->request().query.queryItemValue(QStringLiteral("machine"), QUrl::FullyDecoded);
    const QString installer = uuidOf(segment);
    if (installer.isEmpty() || !isMachine(machine))
        return nothingHere(c);
    QSqlDatabase db = Database::connection();
    db.transaction();
    QSqlQuery remove(db);
    remove.prepare(QStringLiteral("DELETE FROM installs WHERE user_id = ? AND installer_id = ? AND machine_id = ?"));
    remove.addBindValue(userId);
    remove.addBindValue(installer);
    remove.addBindValue(machine);
    if (!remove.exec() || !MarketCatalogue::changedFor(userId) || !db.commit()) {
        db.rollback();
        return databaseFailed(c);
    }
    c->respond(204, {});
}
