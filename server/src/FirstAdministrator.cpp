#include "FirstAdministrator.h"

#include "Database.h"

#include "sdk/accounts/ConsolePrompt.h"
#include "sdk/accounts/PasswordHasher.h"

#include <QSqlQuery>
#include <QVariant>

QString FirstAdministrator::make(QString* failure)
{
    QSqlQuery existing(Database::connection());
    if (!existing.exec(QStringLiteral("SELECT email FROM users WHERE administrator LIMIT 1"))) {
        *failure = QStringLiteral("The database can't be read.");
        return {};
    }
    if (existing.next()) {
        *failure = QStringLiteral("This server has an administrator already (%1); nothing was changed. More are "
                                  "made with veluria-admin --server.")
                       .arg(existing.value(0).toString());
        return {};
    }
    const QString email =
        ConsolePrompt::line(QStringLiteral("E-mail address of the first administrator: "), false).trimmed();
    if (!email.contains(QLatin1Char('@'))) {
        *failure = QStringLiteral("\"%1\" is not an e-mail address.").arg(email);
        return {};
    }
    const QString password = ConsolePrompt::line(QStringLiteral("Password: "), true);
    if (password.isEmpty()) {
        *failure = QStringLiteral("The password is empty.");
        return {};
    }
    if (ConsolePrompt::interactive() && ConsolePrompt::line(QStringLiteral("The password again: "), true) != password) {
        *failure = QStringLiteral("The two passwords differ; nothing was changed.");
        return {};
    }
    const QString hash = PasswordHasher::hash(password);
    QSqlQuery insert(Database::connection());
    insert.prepare(QStringLiteral("INSERT INTO users(email, password_hash, administrator) VALUES (?, ?, true) "
                                  "ON CONFLICT (email) DO NOTHING RETURNING id"));
    insert.addBindValue(email);
    insert.addBindValue(hash);
    if (hash.isNull() || !insert.exec()) {
        *failure = QStringLiteral("The administrator can't be made; nothing was changed.");
        return {};
    }
    if (!insert.next()) {
        *failure = QStringLiteral("An account with the address %1 exists already; nothing was changed.").arg(email);
        return {};
    }
    return email;
}
