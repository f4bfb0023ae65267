#include "sdk/catalogue/CatalogSnapshot.h"

#include "sdk/base/Database.h"
#include "sdk/installs/Applications.h"

std::optional<CatalogSnapshot> CatalogSnapshot::read(Database& database, const QString& userId, qint64 afterSeq,
                                                     QString* failure)
{
    auto failed = [&](const QString& reason) -> std::optional<CatalogSnapshot> {
        database.exec("ROLLBACK");
        if (failure)
            *failure = reason;
        return std::nullopt;
    };
    if (!database.exec("BEGIN"))
        return failed(database.errorMessage());
    CatalogSnapshot snapshot;
    WorkspaceStore workspaces(database);
    AccountStore accounts(database);
    snapshot.catalogVersion = workspaces.catalogVersion();
    const auto account = accounts.findById(userId);
    if (!account)
        return failed(QStringLiteral("the account is gone"));
    snapshot.account = *account;
    auto list = workspaces.workspacesOf(userId);
    auto assets = workspaces.assetsOf(userId);
    auto publications = workspaces.publicationsSince(userId, afterSeq);
    auto market = MarketSnapshot::read(database, userId, Applications::thisMachine());
    if (snapshot.catalogVersion < 0 || !list || !assets || !publications || !market)
        return failed(database.errorMessage());
    snapshot.market = *market;
    snapshot.workspaces = *list;
    snapshot.assets = *assets;
    snapshot.publications = *publications;
    snapshot.lastPublicationSeq = publications->isEmpty() ? afterSeq : publications->last().seq;
    database.exec("COMMIT");
    return snapshot;
}
