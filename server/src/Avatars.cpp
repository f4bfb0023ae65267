#include "Avatars.h"

#include "BlobStore.h"
#include "Database.h"
#include "RequestContext.h"

#include <QFile>
#include <QSqlQuery>
#include <QVariant>

using namespace RequestContext;

Avatars::Avatars(const Accounts& accounts, const BlobStore& store)
    : m_accounts(accounts)
    , m_store(store)
{ }

bool Avatars::handle(HttpConnection* c, const QStringList& path)
{
    if (path.size() != 3 || path.value(0) != QLatin1String("users") || path.value(2) != QLatin1String("avatar"))
        return false;
    QString userId;
    if (!authenticate(m_accounts, c, &userId))
        return true;
    if (c->request().method != "GET") {
        methodNotAllowed(c);
        return true;
    }
    const QString personId = uuidOf(path.value(1));
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT u.avatar_sha256, u.avatar_type FROM users u WHERE u.id = ? AND "
                                 "u.avatar_sha256 IS NOT NULL AND (u.id = ? OR EXISTS (SELECT 1 FROM members mine "
                                 "JOIN members theirs ON theirs.workspace_id = mine.workspace_id WHERE mine.user_id = "
                                 "? AND theirs.user_id = u.id))"));
    query.addBindValue(personId);
    query.addBindValue(userId);
    query.addBindValue(userId);
    QFile picture;
    if (!personId.isEmpty() && query.exec() && query.next() && BlobStore::isDigest(query.value(0).toString())) {
        picture.setFileName(m_store.contentPath(query.value(0).toString()));
        picture.open(QIODevice::ReadOnly);
    }
    if (!picture.isOpen()) {
        c->respondError(404, 404, QStringLiteral("There is no picture of this person for you."));
        return true;
    }
    c->respond(200, picture.readAll(), {{"Cache-Control", "private, no-cache"}}, query.value(1).toString().toLatin1());
    return true;
}
