#include "SignInLimit.h"

#include "Database.h"

#include <QSqlQuery>
#include <QVariant>

namespace {
QString accountKey(const QString& email)
{
    return email.trimmed().toLower();
}

void count(const QString& scope, const QString& key)
{
    // A count older than the window starts a new window.
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral(
        "INSERT INTO sign_in_failures(scope, key, failures) VALUES (?, ?, 1) ON CONFLICT (scope, key) DO UPDATE SET "
        "failures = CASE WHEN sign_in_failures.window_start < now() - make_interval(secs => ?) THEN 1 ELSE "
        "sign_in_failures.failures + 1 END, window_start = CASE WHEN sign_in_failures.window_start < now() - "
        "make_interval(secs => ?) THEN now() ELSE sign_in_failures.window_start END"));
    query.addBindValue(scope);
    query.addBindValue(key);
    query.addBindValue(double(SignInLimit::windowSeconds));
    query.addBindValue(double(SignInLimit::windowSeconds));
    query.exec();
}
} // namespace

int SignInLimit::retryAfter(const QString& address, const QString& email)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral(
        "SELECT ceil(extract(epoch FROM max(window_start) + make_interval(secs => ?) - now()))::integer FROM "
        "sign_in_failures WHERE window_start > now() - make_interval(secs => ?) AND ((scope = 'address' AND key = ? "
        "AND failures >= ?) OR (scope = 'account' AND key = ? AND failures >= ?))"));
    query.addBindValue(double(windowSeconds));
    query.addBindValue(double(windowSeconds));
    query.addBindValue(address);
    query.addBindValue(failuresPerAddress);
    query.addBindValue(accountKey(email));
    query.addBindValue(failuresPerAccount);
    if (!query.exec() || !query.next() || query.value(0).isNull())
        return 0;
    return qMax(1, query.value(0).toInt());
}

void SignInLimit::failed(const QString& address, const QString& email)
{
    count(QStringLiteral("address"), address);
    if (!email.trimmed().isEmpty())
        count(QStringLiteral("account"), accountKey(email));
}

void SignInLimit::succeeded(const QString& email)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("DELETE FROM sign_in_failures WHERE scope = 'account' AND key = ?"));
    query.addBindValue(accountKey(email));
    query.exec();
}
