#include "WebSessions.h"

#include "Accounts.h"
#include "Database.h"

#include <QSqlQuery>
#include <QVariant>

#include <sodium.h>

namespace {
QVariant orNull(const QString& id)
{
    return id.isEmpty() ? QVariant(QMetaType(QMetaType::QString)) : QVariant(id);
}

QByteArray cookieValueOf(const HttpRequest& request)
{
    const QByteArray prefix = QByteArray(WebSessions::cookieName) + '=';
    const QList<QByteArray> cookies = request.header("cookie").split(';');
    for (const QByteArray& cookie : cookies) {
        const QByteArray trimmed = cookie.trimmed();
        if (trimmed.startsWith(prefix))
            return trimmed.mid(prefix.size());
    }
    return {};
}
} // namespace

WebSessions::WebSessions(qint64 signedInLifetime)
    : m_lifetime(signedInLifetime)
{ }

WebSessions::Session WebSessions::find(const HttpRequest& request) const
{
    const QByteArray token = cookieValueOf(request);
    if (token.isEmpty())
        return {};
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT user_id, pending_user_id, csrf FROM web_sessions WHERE token_hash = ? AND "
                                 "expires_at > now()"));
    query.addBindValue(Accounts::tokenHash(token));
    if (!query.exec() || !query.next())
        return {};
    Session session;
    session.token = token;
    session.userId = query.value(0).toString();
    session.pendingUserId = query.value(1).toString();
    session.csrf = query.value(2).toString();
    return session;
}

WebSessions::Session WebSessions::findOrStart(const HttpRequest& request) const
{
    const Session found = find(request);
    return found.isValid() ? found : open({}, {}, anonymousLifetime);
}

WebSessions::Session WebSessions::replace(const Session& old, const QString& userId, const QString& pendingUserId) const
{
    end(old);
    const qint64 lifetime = !userId.isEmpty() ? m_lifetime
        : !pendingUserId.isEmpty()            ? pendingLifetime
                                              : anonymousLifetime;
    return open(userId, pendingUserId, lifetime);
}

WebSessions::Session WebSessions::open(const QString& userId, const QString& pendingUserId, qint64 lifetime) const
{
    QSqlQuery sweep(Database::connection());
    sweep.exec(QStringLiteral("DELETE FROM web_sessions WHERE expires_at < now() - interval '1 day'"));
    Session session;
    session.token = Accounts::newToken();
    session.userId = userId;
    session.pendingUserId = pendingUserId;
    session.csrf = QString::fromLatin1(Accounts::newToken());
    session.lifetime = lifetime;
    session.isNew = true;
    QSqlQuery insert(Database::connection());
    insert.prepare(QStringLiteral("INSERT INTO web_sessions(token_hash, user_id, pending_user_id, csrf, expires_at) "
                                  "VALUES (?, ?, ?, ?, now() + make_interval(secs => ?))"));
    insert.addBindValue(Accounts::tokenHash(session.token));
    insert.addBindValue(orNull(userId));
    insert.addBindValue(orNull(pendingUserId));
    insert.addBindValue(session.csrf);
    insert.addBindValue(double(lifetime));
    return insert.exec() ? session : Session();
}

void WebSessions::end(const Session& session) const
{
    if (!session.isValid())
        return;
    QSqlQuery remove(Database::connection());
    remove.prepare(QStringLiteral("DELETE FROM web_sessions WHERE token_hash = ?"));
    remove.addBindValue(Accounts::tokenHash(session.token));
    remove.exec();
}

QByteArray WebSessions::cookieOf(const Session& session)
{
    return QByteArray(cookieName) + '=' + session.token + "; Path=/; Max-Age=" + QByteArray::number(session.lifetime)
        + "; HttpOnly; Secure; SameSite=Strict";
}

QByteArray WebSessions::expiredCookie()
{
    return QByteArray(cookieName) + "=; Path=/; Max-Age=0; HttpOnly; Secure; SameSite=Strict";
}

bool WebSessions::acceptsForm(const Session& session, const QUrlQuery& form)
{
    const QByteArray given = form.queryItemValue(QStringLiteral("csrf"), QUrl::FullyDecoded).toLatin1();
    const QByteArray expected = session.csrf.toLatin1();
    return session.isValid() && !expected.isEmpty() && given.size() == expected.size()
        && sodium_memcmp(given.constData(), expected.constData(), size_t(given.size())) == 0;
}

QByteArray WebSessions::makeLink(const QString& userId, const QString& purpose, const QString& path, qint64 lifetime)
{
    QSqlQuery sweep(Database::connection());
    sweep.exec(QStringLiteral("DELETE FROM web_links WHERE expires_at < now()"));
    const QByteArray secret = Accounts::newToken();
    QSqlQuery insert(Database::connection());
    insert.prepare(QStringLiteral("INSERT INTO web_links(token_hash, user_id, purpose, path, expires_at) VALUES (?, ?, "
                                  "?, coalesce(?, ''), now() + make_interval(secs => ?))"));
    insert.addBindValue(Accounts::tokenHash(secret));
    insert.addBindValue(userId);
    insert.addBindValue(purpose);
    insert.addBindValue(path);
    insert.addBindValue(double(lifetime));
    return insert.exec() ? secret : QByteArray();
}

bool WebSessions::linkIsLive(const QByteArray& secret, const QString& purpose)
{
    QSqlQuery query(Database::connection());
    query.prepare(
        QStringLiteral("SELECT 1 FROM web_links WHERE token_hash = ? AND purpose = ? AND expires_at > now()"));
    query.addBindValue(Accounts::tokenHash(secret));
    query.addBindValue(purpose);
    return !secret.isEmpty() && query.exec() && query.next();
}

bool WebSessions::takeLink(const QByteArray& secret, const QString& purpose, QString* userId, QString* path)
{
    if (secret.isEmpty())
        return false;
    // Deleting and reading in one statement: of two processes that get the
    // same link at once, only one sees the row.
    QSqlQuery take(Database::connection());
    take.prepare(QStringLiteral("DELETE FROM web_links WHERE token_hash = ? AND purpose = ? RETURNING user_id, path, "
                                "expires_at > now()"));
    take.addBindValue(Accounts::tokenHash(secret));
    take.addBindValue(purpose);
    if (!take.exec() || !take.next() || !take.value(2).toBool())
        return false;
    *userId = take.value(0).toString();
    *path = take.value(1).toString();
    return true;
}
