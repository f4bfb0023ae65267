#include "Api.h"

#include "Database.h"
#include "EventHub.h"
#include "Publications.h"
#include "RequestContext.h"
#include "SignInLimit.h"
#include "SlowWork.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSqlQuery>
#include <QVariant>

using namespace RequestContext;

namespace {
QString stamp(const QVariant& value)
{
    return value.toDateTime().toUTC().toString(Qt::ISODateWithMs);
}

void notFound(HttpConnection* c)
{
    c->respondError(404, 404, QStringLiteral("There is no such workspace, or you are not a member of it."));
}

void tooManyFailures(HttpConnection* c, int wait)
{
    c->respondError(429, 429,
                    QStringLiteral("Too many failed sign-ins for this account or from this address. Please try "
                                   "again in %1 minutes.")
                        .arg((wait + 59) / 60),
                    {{"Retry-After", QByteArray::number(wait)}});
}
} // namespace

Api::Api(const Accounts& accounts)
    : m_accounts(accounts)
{ }

bool Api::handle(HttpConnection* c, const QStringList& path)
{
    const QByteArray method = c->request().method;
    if (path == QStringList{QStringLiteral("sessions")}) {
        method == "POST" ? signIn(c) : methodNotAllowed(c);
        return true;
    }
    if (path == QStringList{QStringLiteral("sessions"), QStringLiteral("verify")}) {
        method == "POST" ? verify(c) : methodNotAllowed(c);
        return true;
    }
    if (path.value(0) != QLatin1String("user") && path.value(0) != QLatin1String("workspaces")
        && path != QStringList{QStringLiteral("sessions"), QStringLiteral("current")})
        return false;

    QString userId;
    if (!authenticate(m_accounts, c, &userId))
        return true;
    if (path.value(0) == QLatin1String("sessions")) {
        if (method != "DELETE")
            return methodNotAllowed(c), true;
        m_accounts.signOut(c->request().bearerToken());
        c->respond(204, {});
    } else if (path.value(0) == QLatin1String("user")) {
        method == "GET" ? user(c, userId) : methodNotAllowed(c);
    } else if (path.size() == 1) {
        if (method == "GET")
            workspaces(c, userId);
        else if (method == "POST")
            createWorkspace(c, userId);
        else
            methodNotAllowed(c);
    } else {
        const QString workspaceId = uuidOf(path.value(1));
        const int role = workspaceId.isEmpty() ? 0 : roleOf(workspaceId, userId);
        const QString what = path.value(2);
        if (role == 0 || path.size() < 3 || path.size() > 4)
            notFound(c);
        else if (what == QLatin1String("members") && path.size() == 3 && method == "GET")
            members(c, workspaceId);
        else if (what == QLatin1String("members") && role != 1 && method != "GET")
            c->respondError(403, 403, QStringLiteral("Only the workspace's owner can change its members."));
        else if (what == QLatin1String("members") && path.size() == 3 && method == "POST")
            addMember(c, workspaceId);
        else if (what == QLatin1String("members") && path.size() == 4 && method == "DELETE")
            removeMember(c, workspaceId, uuidOf(path.value(3)));
        else if (what == QLatin1String("publications") && path.size() == 3 && method == "GET")
            publications(c, workspaceId);
        else if (what == QLatin1String("publications") && path.size() == 3 && method == "POST")
            publish(c, workspaceId, userId);
        else
            return false;
    }
    return true;
}

void Api::signIn(HttpConnection* c)
{
    QJsonObject body;
    if (!jsonBody(c, &body))
        return;
    const QString email = body.value(QStringLiteral("email")).toString();
    const QString password = body.value(QStringLiteral("password")).toString();
    const QString address = c->clientAddress();
    if (const int wait = SignInLimit::retryAfter(address, email))
        return tooManyFailures(c, wait);
    Accounts::Candidate account;
    const bool known = m_accounts.candidate(email, &account);
    // The hash takes a processor for a while: not this connection thread's.
    SlowWork::run<bool>(
        c, [known, password, hash = account.passwordHash] { return Accounts::passwordMatches(known, password, hash); },
        [this, c, known, account, email, address](const bool& right) {
            QByteArray token;
            const Accounts::SignIn result = right ? m_accounts.open(account, &token) : Accounts::SignIn::Failed;
            if (right)
                SignInLimit::succeeded(email);
            else
                SignInLimit::failed(address, email);
            switch (result) {
            case Accounts::SignIn::Signed:
                c->respondJson(201, {{QStringLiteral("token"), QString::fromLatin1(token)}});
                return;
            case Accounts::SignIn::NeedsCode:
                c->respondJson(202, {{QStringLiteral("verification"), QString::fromLatin1(token)}});
                return;
            case Accounts::SignIn::Failed:
                break;
            }
            if (right)
                return databaseFailed(c);
            c->respondError(401, WrongCredentials, QStringLiteral("The e-mail address or the password is wrong."));
        });
}

void Api::verify(HttpConnection* c)
{
    QJsonObject body;
    if (!jsonBody(c, &body))
        return;
    // Wrong codes count against the address like wrong passwords: six
    // digits must not be guessed by trying them all.
    const QString address = c->clientAddress();
    if (const int wait = SignInLimit::retryAfter(address, {}))
        return tooManyFailures(c, wait);
    QByteArray token;
    if (m_accounts.verify(body.value(QStringLiteral("verification")).toString().toLatin1(),
                          body.value(QStringLiteral("code")).toString(), &token))
        return c->respondJson(201, {{QStringLiteral("token"), QString::fromLatin1(token)}});
    SignInLimit::failed(address, {});
    c->respondError(401, WrongCode, QStringLiteral("The code is wrong or has expired."));
}

void Api::user(HttpConnection* c, const QString& userId)
{
    QSqlQuery query(Database::connection());
    query.prepare(
        QStringLiteral("SELECT email, first_name, last_name, needs_confirmation, avatar_sha256 IS NOT NULL FROM users "
                       "WHERE id = ?"));
    query.addBindValue(userId);
    if (!query.exec() || !query.next())
        return databaseFailed(c);
    c->respondJson(200,
                   {{QStringLiteral("id"), userId},
                    {QStringLiteral("email"), query.value(0).toString()},
                    {QStringLiteral("firstName"), query.value(1).toString()},
                    {QStringLiteral("lastName"), query.value(2).toString()},
                    {QStringLiteral("needsConfirmation"), query.value(3).toBool()},
                    {QStringLiteral("hasAvatar"), query.value(4).toBool()}});
}

void Api::workspaces(HttpConnection* c, const QString& userId)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT w.id, w.name, w.updated_at, m.role FROM workspaces w JOIN members m ON "
                                 "m.workspace_id = w.id WHERE m.user_id = ? ORDER BY w.updated_at DESC"));
    query.addBindValue(userId);
    if (!query.exec())
        return databaseFailed(c);
    QJsonArray list;
    while (query.next())
        list.append(QJsonObject{{QStringLiteral("id"), query.value(0).toString()},
                                {QStringLiteral("name"), query.value(1).toString()},
                                {QStringLiteral("updatedAt"), stamp(query.value(2))},
                                {QStringLiteral("role"), query.value(3).toInt()}});
    c->respondJson(200, {{QStringLiteral("workspaces"), list}});
}

void Api::createWorkspace(HttpConnection* c, const QString& userId)
{
    QJsonObject body;
    if (!jsonBody(c, &body))
        return;
    const QString name = body.value(QStringLiteral("name")).toString().trimmed();
    if (name.isEmpty() || name.size() > 200)
        return c->respondError(422, 422, QStringLiteral("A workspace needs a name of 1 to 200 characters."));
    QSqlDatabase db = Database::connection();
    db.transaction();
    QSqlQuery insert(db);
    insert.prepare(QStringLiteral("WITH w AS (INSERT INTO workspaces(name) VALUES (?) RETURNING id, updated_at) "
                                  "INSERT INTO members(workspace_id, user_id, role) SELECT id, ?, 1 FROM w "
                                  "RETURNING workspace_id, (SELECT updated_at FROM w)"));
    insert.addBindValue(name);
    insert.addBindValue(userId);
    if (!insert.exec() || !insert.next()) {
        db.rollback();
        return databaseFailed(c);
    }
    db.commit();
    c->respondJson(201,
                   {{QStringLiteral("id"), insert.value(0).toString()},
                    {QStringLiteral("name"), name},
                    {QStringLiteral("updatedAt"), stamp(insert.value(1))},
                    {QStringLiteral("role"), 1}});
}

void Api::members(HttpConnection* c, const QString& workspaceId)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral(
        "SELECT u.id, u.first_name, u.last_name, u.email, m.role, u.avatar_sha256 IS NOT NULL "
        "FROM members m JOIN users u ON u.id = m.user_id WHERE m.workspace_id = ? ORDER BY m.role, u.email"));
    query.addBindValue(workspaceId);
    if (!query.exec())
        return databaseFailed(c);
    QJsonArray list;
    while (query.next())
        list.append(QJsonObject{{QStringLiteral("id"), query.value(0).toString()},
                                {QStringLiteral("firstName"), query.value(1).toString()},
                                {QStringLiteral("lastName"), query.value(2).toString()},
                                {QStringLiteral("email"), query.value(3).toString()},
                                {QStringLiteral("role"), query.value(4).toInt()},
                                {QStringLiteral("hasAvatar"), query.value(5).toBool()}});
    c->respondJson(200, {{QStringLiteral("members"), list}});
}

void Api::addMember(HttpConnection* c, const QString& workspaceId)
{
    QJsonObject body;
    if (!jsonBody(c, &body))
        return;
    QSqlQuery insert(Database::connection());
    insert.prepare(QStringLiteral("INSERT INTO members(workspace_id, user_id, role) SELECT ?, id, 2 FROM users WHERE "
                                  "lower(email) = lower(?) ON CONFLICT DO NOTHING RETURNING user_id"));
    insert.addBindValue(workspaceId);
    insert.addBindValue(body.value(QStringLiteral("email")).toString().trimmed());
    if (!insert.exec())
        return databaseFailed(c);
    if (!insert.next())
        return c->respondError(409, 409, QStringLiteral("There is no such account, or it is a member already."));
    c->respondJson(201, {{QStringLiteral("id"), insert.value(0).toString()}, {QStringLiteral("role"), 2}});
}

void Api::removeMember(HttpConnection* c, const QString& workspaceId, const QString& memberId)
{
    // The owner stays: a workspace without one could never change again.
    QSqlQuery remove(Database::connection());
    remove.prepare(QStringLiteral("DELETE FROM members WHERE workspace_id = ? AND user_id = ? AND role <> 1"));
    remove.addBindValue(workspaceId);
    remove.addBindValue(memberId);
    if (!remove.exec())
        return databaseFailed(c);
    if (remove.numRowsAffected() == 0)
        return c->respondError(404, 404, QStringLiteral("That account is not a member who can be removed."));
    c->respond(204, {});
}

void Api::publications(HttpConnection* c, const QString& workspaceId)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral(
        "SELECT p.id, p.user_id, u.first_name, u.email, p.text, p.revision_id, r.file_name, r.size, r.sha256, "
        "p.created_at, r.folder FROM publications p JOIN users u ON u.id = p.user_id LEFT JOIN revisions r ON r.id = "
        "p.revision_id WHERE p.workspace_id = ? ORDER BY p.created_at DESC LIMIT 200"));
    query.addBindValue(workspaceId);
    if (!query.exec())
        return databaseFailed(c);
    QJsonArray list;
    while (query.next()) {
        QJsonObject item{{QStringLiteral("id"), query.value(0).toString()},
                         {QStringLiteral("userID"), query.value(1).toString()},
                         {QStringLiteral("userFirstName"), query.value(2).toString()},
                         {QStringLiteral("userEmail"), query.value(3).toString()},
                         {QStringLiteral("text"), query.value(4).toString()},
                         {QStringLiteral("createdAt"), stamp(query.value(9))}};
        if (!query.value(5).isNull())
            item.insert(QStringLiteral("revision"),
                        QJsonObject{{QStringLiteral("id"), query.value(5).toString()},
                                    {QStringLiteral("fileName"), query.value(6).toString()},
                                    {QStringLiteral("size"), query.value(7).toLongLong()},
                                    {QStringLiteral("sha256"), query.value(8).toString()},
                                    {QStringLiteral("folder"), query.value(10).toBool()}});
        list.append(item);
    }
    c->respondJson(200, {{QStringLiteral("publications"), list}});
}

void Api::publish(HttpConnection* c, const QString& workspaceId, const QString& userId)
{
    QJsonObject body;
    if (!jsonBody(c, &body))
        return;
    const QString text = body.value(QStringLiteral("text")).toString();
    if (text.trimmed().isEmpty() || text.size() > 10000)
        return c->respondError(422, 422, QStringLiteral("A publication needs a text of 1 to 10,000 characters."));
    const QString id = Publications::publishText(workspaceId, userId, text);
    if (id.isEmpty())
        return databaseFailed(c);
    c->respondJson(201, {{QStringLiteral("id"), id}});
}
