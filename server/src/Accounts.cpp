#include "Accounts.h"

#include "Database.h"
#include "EventHub.h"
#include "sdk/accounts/Base32.h"
#include "sdk/accounts/PasswordHasher.h"
#include "sdk/accounts/Totp.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QJsonObject>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <sodium.h>

namespace {
// Long enough to type a code, short enough that a stolen pending token is useless.
constexpr qint64 pendingLifetime = 300;
} // namespace

Accounts::Accounts(qint64 sessionLifetimeSeconds)
    : m_lifetime(sessionLifetimeSeconds)
{ }

QByteArray Accounts::newToken()
{
    QByteArray raw(32, '\0');
    randombytes_buf(raw.data(), size_t(raw.size()));
    return raw.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

QByteArray Accounts::tokenHash(const QByteArray& token)
{
    return QCryptographicHash::hash(token, QCryptographicHash::Sha256);
}

QByteArray Accounts::openSession(const QString& userId, bool pending, qint64 lifetime) const
{
    const QByteArray token = newToken();
    QSqlQuery insert(Database::connection());
    insert.prepare(QStringLiteral("INSERT INTO sessions(token_hash, user_id, pending, expires_at) "
                                  "VALUES (?, ?, ?, now() + make_interval(secs => ?))"));
    insert.addBindValue(tokenHash(token));
    insert.addBindValue(userId);
    insert.addBindValue(pending);
    insert.addBindValue(double(lifetime));
    return insert.exec() ? token : QByteArray();
}

bool Accounts::candidate(const QString& email, Candidate* account) const
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT id, password_hash, totp_secret IS NOT NULL FROM users WHERE lower(email) = "
                                 "lower(?)"));
    query.addBindValue(email.trimmed());
    if (!query.exec() || !query.next())
        return false;
    *account = {query.value(0).toString(), query.value(1).toString(), query.value(2).toBool()};
    return true;
}

Accounts::SignIn Accounts::open(const Candidate& account, QByteArray* token) const
{
    const bool pending = account.secondFactor;
    *token = openSession(account.userId, pending, pending ? pendingLifetime : m_lifetime);
    if (token->isEmpty())
        return SignIn::Failed;
    return pending ? SignIn::NeedsCode : SignIn::Signed;
}

Accounts::SignIn Accounts::signIn(const QString& email, const QString& password, QByteArray* token) const
{
    Candidate account;
    if (!candidate(email, &account)) {
        PasswordHasher::verifyNothing(password);
        return SignIn::Failed;
    }
    if (!PasswordHasher::verify(password, account.passwordHash))
        return SignIn::Failed;
    return open(account, token);
}

bool Accounts::verify(const QByteArray& pendingToken, const QString& code, QByteArray* token) const
{
    QSqlDatabase db = Database::connection();
    db.transaction();
    QSqlQuery query(db);
    // The row lock keeps two processes from taking the same code twice.
    query.prepare(QStringLiteral("SELECT u.id, u.totp_secret, u.totp_last_step FROM sessions s JOIN users u ON "
                                 "u.id = s.user_id WHERE s.token_hash = ? AND s.pending AND s.expires_at > now() "
                                 "FOR UPDATE OF u"));
    query.addBindValue(tokenHash(pendingToken));
    if (!query.exec() || !query.next()) {
        db.rollback();
        return false;
    }
    const QString userId = query.value(0).toString();
    const qint64 step = Totp::verify(query.value(1).toByteArray(), code, QDateTime::currentSecsSinceEpoch(),
                                     query.value(2).toLongLong());
    if (step < 0) {
        db.rollback();
        return false;
    }
    QSqlQuery used(db);
    used.prepare(QStringLiteral("UPDATE users SET totp_last_step = ? WHERE id = ?"));
    used.addBindValue(step);
    used.addBindValue(userId);
    QSqlQuery gone(db);
    gone.prepare(QStringLiteral("DELETE FROM sessions WHERE token_hash = ?"));
    gone.addBindValue(tokenHash(pendingToken));
    if (!used.exec() || !gone.exec()) {
        db.rollback();
        return false;
    }
    db.commit();
    *token = openSession(userId, false, m_lifetime);
    return !token->isEmpty();
}

void Accounts::signOut(const QByteArray& token) const
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("DELETE FROM sessions WHERE token_hash = ?"));
    query.addBindValue(tokenHash(token));
    query.exec();
}

Accounts::Check Accounts::userOf(const QByteArray& token, QString* userId) const
{
    if (token.isEmpty())
        return Check::Unknown;
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT user_id, expires_at > now() FROM sessions WHERE token_hash = ? AND NOT "
                                 "pending"));
    query.addBindValue(tokenHash(token));
    if (!query.exec() || !query.next())
        return Check::Unknown;
    if (!query.value(1).toBool())
        return Check::Expired;
    *userId = query.value(0).toString();
    return Check::Valid;
}

bool Accounts::passwordMatches(bool known, const QString& password, const QString& hash)
{
    if (known)
        return PasswordHasher::verify(password, hash);
    PasswordHasher::verifyNothing(password);
    return false;
}

QString Accounts::sessionIdOf(const QByteArray& token)
{
    return QString::fromLatin1(tokenHash(token).toHex());
}

std::optional<QSet<QString>> Accounts::standing(const QSet<QString>& sessionIds)
{
    QSqlQuery query(Database::connection());
    query.prepare(
        QStringLiteral("SELECT encode(token_hash, 'hex') FROM sessions WHERE token_hash IN (SELECT "
                       "decode(id, 'hex') FROM unnest(?::text[]) AS id) AND NOT pending AND expires_at > now()"));
    query.addBindValue(QLatin1Char('{') + QStringList(sessionIds.begin(), sessionIds.end()).join(QLatin1Char(','))
                       + QLatin1Char('}'));
    if (!query.exec())
        return std::nullopt;
    QSet<QString> found;
    while (query.next())
        found.insert(query.value(0).toString());
    return found;
}

bool Accounts::addUser(const QString& email, const QString& password, bool secondFactor, QString* totpSecret,
                       QString* failure) const
{
    const QString hash = PasswordHasher::hash(password);
    if (hash.isEmpty() || !email.contains(QLatin1Char('@')) || password.isEmpty()) {
        *failure = QStringLiteral("An account needs an e-mail address and a password.");
        return false;
    }
    const QByteArray secret = secondFactor ? Totp::newSecret() : QByteArray();
    QSqlQuery insert(Database::connection());
    insert.prepare(QStringLiteral("INSERT INTO users(email, password_hash, totp_secret) VALUES (?, ?, ?)"));
    insert.addBindValue(email.trimmed());
    insert.addBindValue(hash);
    insert.addBindValue(secondFactor ? QVariant(secret) : QVariant(QMetaType(QMetaType::QByteArray)));
    if (!insert.exec()) {
        *failure = QStringLiteral("The account can't be made: %1").arg(insert.lastError().text());
        return false;
    }
    if (secondFactor)
        *totpSecret = Base32::encode(secret);
    return true;
}

bool Accounts::replacePassword(const QString& userId, const QString& hash)
{
    QSqlQuery update(Database::connection());
    update.prepare(QStringLiteral("UPDATE users SET password_hash = ? WHERE id = ?"));
    update.addBindValue(hash);
    update.addBindValue(userId);
    if (!update.exec())
        return false;
    for (const QString& table : {QStringLiteral("sessions"), QStringLiteral("web_sessions")}) {
        QSqlQuery remove(Database::connection());
        remove.prepare(QStringLiteral("DELETE FROM %1 WHERE user_id = ?").arg(table));
        remove.addBindValue(userId);
        if (!remove.exec())
            return false;
    }
    return EventHub::recordForUser(userId, QStringLiteral("password"), {{QStringLiteral("userID"), userId}});
}
