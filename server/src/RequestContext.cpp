#include "RequestContext.h"

#include "Database.h"

#include <QJsonDocument>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

int RequestContext::roleOf(const QString& workspaceId, const QString& userId)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT role FROM members WHERE workspace_id = ? AND user_id = ?"));
    query.addBindValue(workspaceId);
    query.addBindValue(userId);
    return query.exec() && query.next() ? query.value(0).toInt() : 0;
}

QString RequestContext::uuidOf(const QString& segment)
{
    const QUuid uuid = QUuid::fromString(segment);
    return uuid.isNull() ? QString() : uuid.toString(QUuid::WithoutBraces);
}

bool RequestContext::jsonBody(HttpConnection* c, QJsonObject* object)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(c->request().body, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) {
        c->respondError(400, 400, QStringLiteral("The request's body is not a JSON object."));
        return false;
    }
    *object = document.object();
    return true;
}
