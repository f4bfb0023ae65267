#include "Administrators.h"

#include "Database.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace {

struct Account
{
    bool administrator = false;
    qint64 otherAdministrators = 0;
};

bool lookUp(const QString& email, Account* account, QString* failure)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT administrator, (SELECT count(*) FROM users o WHERE o.administrator AND o.id "
                                 "<> u.id) FROM users u WHERE lower(u.email) = lower(?)"));
    query.addBindValue(email.trimmed());
    if (!query.exec()) {
        *failure = query.lastError().text();
        return false;
    }
    if (!query.next()) {
        *failure = QStringLiteral("No account has the address %1.").arg(email.trimmed());
        return false;
    }
    *account = {query.value(0).toBool(), query.value(1).toLongLong()};
    return true;
}

bool set(const QString& email, bool administrator, QString* failure)
{
    QSqlQuery update(Database::connection());
    update.prepare(QStringLiteral("UPDATE users SET administrator = ? WHERE lower(email) = lower(?)"));
    update.addBindValue(administrator);
    update.addBindValue(email.trimmed());
    if (!update.exec()) {
        *failure = update.lastError().text();
        return false;
    }
    return true;
}

} // namespace

bool Administrators::grant(const QString& email, QString* failure)
{
    Account account;
    return lookUp(email, &account, failure) && set(email, true, failure);
}

bool Administrators::revoke(const QString& email, QString* failure)
{
    Account account;
    if (!lookUp(email, &account, failure))
        return false;
    if (account.administrator && account.otherAdministrators == 0) {
        *failure = QStringLiteral("%1 is the last administrator; make another one first.").arg(email.trimmed());
        return false;
    }
    return set(email, false, failure);
}
