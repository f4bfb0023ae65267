#include "sdk/accounts/AccountStore.h"

#include "sdk/accounts/PasswordHasher.h"
#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/base/SqlStatement.h"

#include <sqlite3.h>

AccountStore::AccountStore(Database& database)
    : m_database(database)
{ }

std::optional<AccountStore::Account> AccountStore::findOne(const char* sql, const QString& key)
{
    SqlStatement statement(m_database.handle(), sql);
    statement.bind(1, key);
    if (!statement.next())
        return std::nullopt;
    Account account;
    account.id = statement.text(0);
    account.email = statement.text(1);
    account.firstName = statement.text(2);
    account.lastName = statement.text(3);
    account.passwordHash = statement.text(4);
    account.passwordVersion = statement.integer(5);
    account.needsConfirmation = statement.integer(6) != 0;
    account.totpSecret = statement.blob(7);
    account.totpLastStep = statement.integer(8);
    account.avatar = statement.blob(9);
    account.downloadCacheSize = statement.integer(10);
    return account;
}

#define ACCOUNT_COLUMNS                                                                                                \
    "SELECT id, email, first_name, last_name, password_hash, password_version, needs_confirmation, totp_secret, "      \
    "totp_last_step, avatar, download_cache_size FROM users "

std::optional<AccountStore::Account> AccountStore::findByEmail(const QString& email)
{
    return findOne(ACCOUNT_COLUMNS "WHERE email = ?1", email.trimmed());
}

std::optional<AccountStore::Account> AccountStore::findById(const QString& id)
{
    return findOne(ACCOUNT_COLUMNS "WHERE id = ?1", id);
}

QString AccountStore::add(const QString& email, const QString& firstName, const QString& lastName,
                          const QString& password, bool needsConfirmation, QString* failure)
{
    const QString address = email.trimmed();
    if (address.isEmpty() || !address.contains(QLatin1Char('@'))) {
        if (failure)
            *failure = QStringLiteral("\"%1\" is not an e-mail address").arg(email);
        return {};
    }
    if (password.isEmpty()) {
        if (failure)
            *failure = QStringLiteral("the password is empty");
        return {};
    }
    const QString hash = PasswordHasher::hash(password);
    if (hash.isNull()) {
        if (failure)
            *failure = QStringLiteral("the password could not be hashed");
        return {};
    }
    const QString id = Clock::newIdentifier();
    SqlStatement statement(m_database.handle(),
                           "INSERT INTO users(id, email, first_name, last_name, password_hash, needs_confirmation, "
                           "created_at) VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7)");
    statement.bind(1, id).bind(2, address).bind(3, firstName.isNull() ? QStringLiteral("") : firstName);
    statement.bind(4, lastName.isNull() ? QStringLiteral("") : lastName).bind(5, hash);
    statement.bind(6, needsConfirmation).bind(7, Clock::nowMs());
    if (!statement.run()) {
        if (failure)
            *failure = sqlite3_extended_errcode(m_database.handle()) == SQLITE_CONSTRAINT_UNIQUE
                ? QStringLiteral("an account with the address %1 exists already").arg(address)
                : m_database.errorMessage();
        return {};
    }
    return id;
}

bool AccountStore::confirm(const QString& id)
{
    SqlStatement statement(m_database.handle(), "UPDATE users SET needs_confirmation = 0 WHERE id = ?1");
    return statement.bind(1, id).run();
}

bool AccountStore::setPassword(const QString& id, const QString& password)
{
    const QString hash = PasswordHasher::hash(password);
    if (hash.isNull() || password.isEmpty())
        return false;
    SqlStatement statement(
        m_database.handle(),
        "UPDATE users SET password_hash = ?2, password_version = password_version + 1 WHERE id = ?1");
    return statement.bind(1, id).bind(2, hash).run();
}

bool AccountStore::setSecondFactor(const QString& id, const QByteArray& secret)
{
    SqlStatement statement(m_database.handle(), "UPDATE users SET totp_secret = ?2, totp_last_step = 0 WHERE id = ?1");
    return statement.bind(1, id).bindBlob(2, secret).run();
}

bool AccountStore::setAvatar(const QString& id, const QByteArray& image)
{
    SqlStatement statement(m_database.handle(), "UPDATE users SET avatar = ?2 WHERE id = ?1");
    return statement.bind(1, id).bindBlob(2, image).run();
}

bool AccountStore::useCodeStep(const QString& id, qint64 step)
{
    SqlStatement statement(m_database.handle(),
                           "UPDATE users SET totp_last_step = ?2 WHERE id = ?1 AND totp_last_step < ?2");
    return statement.bind(1, id).bind(2, step).run() && sqlite3_changes(m_database.handle()) == 1;
}

bool AccountStore::setDownloadCacheSize(const QString& id, qint64 bytes)
{
    SqlStatement statement(m_database.handle(), "UPDATE users SET download_cache_size = ?2 WHERE id = ?1");
    return statement.bind(1, id).bind(2, bytes).run();
}

qint64 AccountStore::passwordVersion(const QString& id)
{
    SqlStatement statement(m_database.handle(), "SELECT password_version FROM users WHERE id = ?1");
    statement.bind(1, id);
    return statement.next() ? statement.integer(0) : -1;
}
