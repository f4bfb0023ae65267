#pragma once

#include "Accounts.h"
#include "HttpConnection.h"

#include <QJsonObject>
#include <QString>

// Helpers that every endpoint shares: who is asking, what they may see.
namespace RequestContext {

enum ErrorCode {
    WrongCredentials = 2,
    WrongCode = 3,
    TokenExpired = 4,
    NotSignedIn = 5,
};

// The user of the request's bearer token; false after answering 401.
inline bool authenticate(const Accounts& accounts, HttpConnection* c, QString* userId)
{
    switch (accounts.userOf(c->request().bearerToken(), userId)) {
    case Accounts::Check::Valid:
        return true;
    case Accounts::Check::Expired:
        c->respondError(401, TokenExpired, QStringLiteral("Your session has expired. Please sign in again."));
        return false;
    case Accounts::Check::Unknown:
        break;
    }
    c->respondError(401, NotSignedIn, QStringLiteral("You are not signed in."));
    return false;
}

// The answers to a method that the path doesn't take, and to a query that
// failed.
inline void methodNotAllowed(HttpConnection* c)
{
    c->respondError(405, 405, QStringLiteral("This method is not allowed here."));
}
inline void databaseFailed(HttpConnection* c)
{
    c->respondError(500, 500, QStringLiteral("The server's database failed; nothing was changed."));
}

// The user's role in the workspace, 0 when not a member (or no such workspace).
int roleOf(const QString& workspaceId, const QString& userId);
// A path segment that is a UUID, in its plain form, or a null string.
QString uuidOf(const QString& segment);
// The body as a JSON object; false after answering 400.
bool jsonBody(HttpConnection* c, QJsonObject* object);

} // namespace RequestContext
