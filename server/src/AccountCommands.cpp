#include "AccountCommands.h"

#include "Accounts.h"
#include "AdminCommands.h"
#include "AdminLookup.h"
#include "Database.h"
#include "EventHub.h"

#include "sdk/accounts/Base32.h"
#include "sdk/accounts/PasswordHasher.h"
#include "sdk/accounts/Totp.h"

#include <QFile>
#include <QImageReader>
#include <QSqlQuery>
#include <QVariant>

namespace {

AdminOutcome addUser(const AdminCall& call)
{
    if (call.arguments.size() != 2)
        return AdminOutcome::usage();
    const QString email = call.arguments.at(0);
    const QString address = email.trimmed();
    const QString password = call.arguments.at(1);
    if (address.isEmpty() || !address.contains(QLatin1Char('@')))
        return AdminOutcome::failed(QStringLiteral("\"%1\" is not an e-mail address").arg(email));
    if (password.isEmpty())
        return AdminOutcome::failed(QStringLiteral("the password is empty"));
    AdminOutcome unknown;
    if (AdminLookup::account(address, &unknown))
        return AdminOutcome::failed(QStringLiteral("an account with the address %1 exists already").arg(address));
    const QString hash = PasswordHasher::hash(password);
    if (hash.isNull())
        return AdminOutcome::failed(QStringLiteral("the password could not be hashed"));
    QSqlQuery insert(Database::connection());
    insert.prepare(QStringLiteral("INSERT INTO users(email, first_name, last_name, password_hash, needs_confirmation) "
                                  "VALUES (?, ?, ?, ?, ?) RETURNING id"));
    insert.addBindValue(address);
    insert.addBindValue(call.option(QStringLiteral("first")));
    insert.addBindValue(call.option(QStringLiteral("last")));
    insert.addBindValue(hash);
    insert.addBindValue(call.flag(QStringLiteral("unconfirmed")));
    if (!insert.exec() || !insert.next())
        return AdminOutcome::databaseFailed();
    return AdminOutcome::printed(insert.value(0).toString() + QLatin1Char('\n'));
}

// Runs one statement on the account named by the first argument.
AdminOutcome update(const QString& email, const QString& sql, const QVariantList& values,
                    AdminLookup::Account* found = nullptr)
{
    AdminOutcome failure;
    const auto account = AdminLookup::account(email, &failure);
    if (!account)
        return failure;
    QSqlQuery query(Database::connection());
    query.prepare(sql);
    for (const QVariant& value : values)
        query.addBindValue(value);
    query.addBindValue(account->id);
    if (!query.exec())
        return AdminOutcome::databaseFailed();
    if (found)
        *found = *account;
    return AdminOutcome::done();
}

AdminOutcome confirm(const AdminCall& call)
{
    if (call.arguments.size() != 1)
        return AdminOutcome::usage();
    return update(call.arguments.at(0), QStringLiteral("UPDATE users SET needs_confirmation = false WHERE id = ?"), {});
}

AdminOutcome setAvatar(const AdminCall& call)
{
    if (call.arguments.size() != 2)
        return AdminOutcome::usage();
    AdminOutcome failure;
    if (!AdminLookup::account(call.arguments.at(0), &failure))
        return failure;
    const QString stored = call.file(QStringLiteral("1"));
    if (stored.isEmpty())
        return AdminOutcome::failed(QStringLiteral("can't read %1: it was not uploaded").arg(call.arguments.at(1)));
    // Only a picture that decodes is kept: clients show it as it is.
    QImageReader reader(stored);
    const QByteArray format = reader.format();
    if (format.isEmpty() || reader.read().isNull())
        return AdminOutcome::failed(QStringLiteral("%1 is not a picture").arg(call.arguments.at(1)));
    const QString sha256 = stored.section(QLatin1Char('/'), -1);
    AdminLookup::Account account;
    const AdminOutcome outcome =
        update(call.arguments.at(0), QStringLiteral("UPDATE users SET avatar_sha256 = ?, avatar_type = ? WHERE id = ?"),
               {sha256, QStringLiteral("image/") + QString::fromLatin1(format)}, &account);
    if (outcome.status != 200)
        return outcome;
    // Everyone who sees the picture hears that it changed: the person and
    // whoever shares a workspace with them, each once.
    QSqlQuery viewers(Database::connection());
    viewers.prepare(
        QStringLiteral("SELECT ?::text UNION SELECT theirs.user_id::text FROM members mine JOIN members theirs "
                       "ON theirs.workspace_id = mine.workspace_id WHERE mine.user_id = ?"));
    viewers.addBindValue(account.id);
    viewers.addBindValue(account.id);
    if (!viewers.exec())
        return AdminOutcome::databaseFailed();
    while (viewers.next())
        EventHub::recordForUser(viewers.value(0).toString(), QStringLiteral("avatar"),
                                {{QStringLiteral("userID"), account.id}});
    return AdminOutcome::done();
}

AdminOutcome changePassword(const AdminCall& call)
{
    if (call.arguments.size() != 2)
        return AdminOutcome::usage();
    AdminOutcome failure;
    const auto account = AdminLookup::account(call.arguments.at(0), &failure);
    if (!account)
        return failure;
    if (call.arguments.at(1).isEmpty())
        return AdminOutcome::failed(QStringLiteral("the password is empty"));
    const QString hash = PasswordHasher::hash(call.arguments.at(1));
    if (hash.isNull())
        return AdminOutcome::failed(QStringLiteral("the password could not be hashed"));
    QSqlDatabase db = Database::connection();
    db.transaction();
    if (!Accounts::replacePassword(account->id, hash) || !db.commit()) {
        db.rollback();
        return AdminOutcome::databaseFailed();
    }
    return AdminOutcome::done();
}

AdminOutcome enableSecondFactor(const AdminCall& call)
{
    if (call.arguments.size() != 1)
        return AdminOutcome::usage();
    const QByteArray secret = Totp::newSecret();
    AdminLookup::Account account;
    const AdminOutcome outcome = update(
        call.arguments.at(0), QStringLiteral("UPDATE users SET totp_secret = ?, totp_last_step = -1 WHERE id = ?"),
        {secret}, &account);
    if (outcome.status != 200)
        return outcome;
    return AdminOutcome::printed(QStringLiteral("secret: %1\nuri: %2\n")
                                     .arg(Base32::encode(secret), Totp::provisioningURI(secret, account.email)));
}

} // namespace

void AccountCommands::addTo(AdminCommands& commands)
{
    commands.add(QStringLiteral("add-user"), addUser);
    commands.add(QStringLiteral("confirm"), confirm);
    commands.add(QStringLiteral("avatar"), setAvatar);
    commands.add(QStringLiteral("passwd"), changePassword);
    commands.add(QStringLiteral("enable-2fa"), enableSecondFactor);
}
