#include "AdminLookup.h"

#include "Database.h"
#include "RequestContext.h"

#include <QSqlQuery>
#include <QVariant>

std::optional<AdminLookup::Account> AdminLookup::account(const QString& email, AdminOutcome* failure)
{
    // Sign-in ignores the address's case; an exact match wins over another.
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT id, email, needs_confirmation FROM users WHERE lower(email) = lower(?) "
                                 "ORDER BY email = ? DESC LIMIT 1"));
    query.addBindValue(email.trimmed());
    query.addBindValue(email.trimmed());
    if (!query.exec()) {
        *failure = AdminOutcome::databaseFailed();
        return std::nullopt;
    }
    if (!query.next()) {
        *failure = AdminOutcome::failed(QStringLiteral("no account has the address %1").arg(email));
        return std::nullopt;
    }
    return Account{query.value(0).toString(), query.value(1).toString(), query.value(2).toBool()};
}

std::optional<AdminLookup::Workspace> AdminLookup::workspace(const QString& idOrName, AdminOutcome* failure)
{
    QSqlQuery query(Database::connection());
    const QString id = RequestContext::uuidOf(idOrName);
    if (!id.isEmpty() && id == idOrName.toLower()) {
        query.prepare(QStringLiteral("SELECT id, name FROM workspaces WHERE id = ?"));
        query.addBindValue(id);
        if (query.exec() && query.next())
            return Workspace{query.value(0).toString(), query.value(1).toString()};
    }
    query.prepare(QStringLiteral("SELECT id, name FROM workspaces WHERE name = ?"));
    query.addBindValue(idOrName);
    if (!query.exec()) {
        *failure = AdminOutcome::databaseFailed();
        return std::nullopt;
    }
    QList<Workspace> named;
    while (query.next())
        named.append({query.value(0).toString(), query.value(1).toString()});
    if (named.size() == 1)
        return named.first();
    *failure = AdminOutcome::failed(
        named.isEmpty()
            ? QStringLiteral("no workspace is called %1").arg(idOrName)
            : QStringLiteral("%1 workspaces are called %2; give the identifier").arg(named.size()).arg(idOrName));
    return std::nullopt;
}
