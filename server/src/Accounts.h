#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

#include <optional>

// Accounts and sessions in the database. A session is a random token that
// the client holds; the database keeps only its SHA-256 and its expiry.
class Accounts
{
public:
    explicit Accounts(qint64 sessionLifetimeSeconds);

    enum class SignIn { Failed, Signed, NeedsCode };
    // On Signed, token is the session's; on NeedsCode, a token good only
    // for verify(); both expire.
    SignIn signIn(const QString& email, const QString& password, QByteArray* token) const;
    // The same in steps, for callers that check the password elsewhere (on
    // another thread): the account of an address, false when there is none;
    // then a session for it once the password was right.
    struct Candidate
    {
        QString userId;
        QString passwordHash;
        bool secondFactor = false;
    };
    bool candidate(const QString& email, Candidate* account) const;
    // Whether the password is the candidate's; without one (known false) it
    // takes as long, so the time tells nothing. Slow: for the slow-work pool.
    static bool passwordMatches(bool known, const QString& password, const QString& hash);
    SignIn open(const Candidate& account, QByteArray* token) const;
    // Exchanges a pending token and a good code for a session token.
    bool verify(const QByteArray& pendingToken, const QString& code, QByteArray* token) const;
    void signOut(const QByteArray& token) const;

    // Sets a new password (an Argon2id hash) in the caller's transaction:
    // every session of the account ends, the browsers' too, so whoever knew
    // the old one is out, and its clients hear of it on their event streams.
    static bool replacePassword(const QString& userId, const QString& hash);

    enum class Check { Valid, Unknown, Expired };
    Check userOf(const QByteArray& token, QString* userId) const;
    // A random token for a session or a link (URL-safe base 64 of 32
    // bytes), and the hash of one, which is what the database keeps.
    static QByteArray newToken();
    static QByteArray tokenHash(const QByteArray& token);
    // A session's name that may be kept in memory: its token's hash in hex.
    static QString sessionIdOf(const QByteArray& token);
    // Which of the sessions still stand (not ended, not expired); nothing
    // when the database can't tell.
    static std::optional<QSet<QString>> standing(const QSet<QString>& sessionIds);

    // For the command line: makes an account; with a second factor, its
    // secret comes back in base 32 for an authenticator app.
    bool addUser(const QString& email, const QString& password, bool secondFactor, QString* totpSecret,
                 QString* failure) const;

private:
    QByteArray openSession(const QString& userId, bool pending, qint64 lifetime) const;

    qint64 m_lifetime;
};
