#include "WorkspaceCommands.h"

#include "AdminCommands.h"
#include "AdminLookup.h"
#include "Database.h"
#include "Publications.h"
#include "RequestContext.h"

#include "sdk/base/ServiceError.h"
#include "sdk/store/SafeName.h"
#include "sdk/transfers/DownloadLink.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlQuery>
#include <QVariant>

namespace {

QString refusal(ServiceError::Code code)
{
    return ServiceError::make(code).localizedDescription;
}

AdminOutcome addWorkspace(const AdminCall& call)
{
    if (call.arguments.size() != 2)
        return AdminOutcome::usage();
    AdminOutcome failure;
    const auto owner = AdminLookup::account(call.arguments.at(1), &failure);
    if (!owner)
        return failure;
    const QString name = call.arguments.at(0).trimmed();
    if (name.isEmpty())
        return AdminOutcome::failed(QStringLiteral("the workspace's name is empty"));
    QSqlQuery insert(Database::connection());
    insert.prepare(QStringLiteral("WITH w AS (INSERT INTO workspaces(name) VALUES (?) RETURNING id) "
                                  "INSERT INTO members(workspace_id, user_id, role) SELECT id, ?, 1 FROM w "
                                  "RETURNING workspace_id"));
    insert.addBindValue(name);
    insert.addBindValue(owner->id);
    if (!insert.exec() || !insert.next())
        return AdminOutcome::databaseFailed();
    return AdminOutcome::printed(insert.value(0).toString() + QLatin1Char('\n'));
}

AdminOutcome addMember(const AdminCall& call)
{
    if (call.arguments.size() != 2)
        return AdminOutcome::usage();
    AdminOutcome failure;
    const auto workspace = AdminLookup::workspace(call.arguments.at(0), &failure);
    const auto member = workspace ? AdminLookup::account(call.arguments.at(1), &failure) : std::nullopt;
    if (!member)
        return failure;
    // Adding someone who is a member already gives them the role asked for.
    QSqlQuery insert(Database::connection());
    insert.prepare(QStringLiteral("INSERT INTO members(workspace_id, user_id, role) VALUES (?, ?, ?) "
                                  "ON CONFLICT (workspace_id, user_id) DO UPDATE SET role = excluded.role"));
    insert.addBindValue(workspace->id);
    insert.addBindValue(member->id);
    insert.addBindValue(call.flag(QStringLiteral("owner")) ? 1 : 2);
    return insert.exec() ? AdminOutcome::done() : AdminOutcome::databaseFailed();
}

// The workspace and a member of it who may publish there, or the failure.
struct Author
{
    AdminLookup::Workspace workspace;
    AdminLookup::Account account;
};
std::optional<Author> author(const AdminCall& call, AdminOutcome* failure)
{
    const auto workspace = AdminLookup::workspace(call.arguments.at(0), failure);
    const auto account = workspace ? AdminLookup::account(call.arguments.at(1), failure) : std::nullopt;
    if (!account)
        return std::nullopt;
    return Author{*workspace, *account};
}

AdminOutcome publish(const AdminCall& call)
{
    if (call.arguments.size() != 3)
        return AdminOutcome::usage();
    AdminOutcome failure;
    const auto by = author(call, &failure);
    if (!by)
        return failure;
    if (by->account.needsConfirmation)
        return AdminOutcome::failed(refusal(ServiceError::NeedsConfirmation));
    if (RequestContext::roleOf(by->workspace.id, by->account.id) == 0)
        return AdminOutcome::failed(refusal(ServiceError::NotAMember));
    const QString stored = call.file(QStringLiteral("2"));
    if (stored.isEmpty())
        return AdminOutcome::failed(QStringLiteral("can't read %1: it was not uploaded").arg(call.arguments.at(2)));
    const QFileInfo content(stored);
    const Publications::Revision revision{
        SafeName::component(QFileInfo(QDir::cleanPath(call.arguments.at(2))).fileName()), content.size(),
        content.fileName(), call.folders.contains(QStringLiteral("2"))};
    const QString revisionId = Publications::addRevision(by->workspace.id, by->account.id, revision, true,
                                                         call.option(QStringLiteral("text")));
    if (revisionId.isEmpty())
        return AdminOutcome::databaseFailed();
    return AdminOutcome::printed(DownloadLink::make(by->workspace.id, revisionId) + QLatin1Char('\n'));
}

AdminOutcome comment(const AdminCall& call)
{
    if (call.arguments.size() != 3)
        return AdminOutcome::usage();
    AdminOutcome failure;
    const auto by = author(call, &failure);
    if (!by)
        return failure;
    if (RequestContext::roleOf(by->workspace.id, by->account.id) == 0)
        return AdminOutcome::failed(
            QStringLiteral("%1 is not a member of %2").arg(by->account.email, by->workspace.name));
    return Publications::publishText(by->workspace.id, by->account.id, call.arguments.at(2)).isEmpty()
        ? AdminOutcome::databaseFailed()
        : AdminOutcome::done();
}

AdminOutcome printLink(const AdminCall& call)
{
    const QString number = call.option(QStringLiteral("revision"));
    if (call.arguments.size() != 2)
        return AdminOutcome::usage();
    bool isNumber = false;
    if (!number.isEmpty() && (number.toLongLong(&isNumber) < 1 || !isNumber))
        return AdminOutcome::failed(QStringLiteral("the revision must be a number from 1 up, not %1").arg(number));
    AdminOutcome failure;
    const auto workspace = AdminLookup::workspace(call.arguments.at(0), &failure);
    if (!workspace)
        return failure;
    // A file's revisions are numbered from 1 in the order they came.
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT id FROM (SELECT id, row_number() OVER (ORDER BY created_at, id) AS number "
                                 "FROM revisions WHERE workspace_id = ? AND file_name = ?) r "
                                 "WHERE ? = 0 OR number = ? ORDER BY number DESC LIMIT 1"));
    query.addBindValue(workspace->id);
    query.addBindValue(call.arguments.at(1));
    query.addBindValue(number.toLongLong());
    query.addBindValue(number.toLongLong());
    if (!query.exec())
        return AdminOutcome::databaseFailed();
    if (!query.next())
        return AdminOutcome::failed(
            QStringLiteral("%1 has no file %2%3")
                .arg(workspace->name, call.arguments.at(1),
                     number.isEmpty() ? QString() : QStringLiteral(" in revision %1").arg(number)));
    return AdminOutcome::printed(DownloadLink::make(workspace->id, query.value(0).toString()) + QLatin1Char('\n'));
}

AdminOutcome listWorkspaces(const AdminCall& call)
{
    if (call.arguments.size() != 1)
        return AdminOutcome::usage();
    AdminOutcome failure;
    const auto member = AdminLookup::account(call.arguments.at(0), &failure);
    if (!member)
        return failure;
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT w.id, w.updated_at, w.name FROM workspaces w JOIN members m ON "
                                 "m.workspace_id = w.id WHERE m.user_id = ? ORDER BY w.updated_at DESC, w.name, w.id"));
    query.addBindValue(member->id);
    if (!query.exec())
        return AdminOutcome::databaseFailed();
    QString output;
    while (query.next())
        output += query.value(0).toString() + QStringLiteral("  ")
            + query.value(1).toDateTime().toLocalTime().toString(Qt::ISODate) + QStringLiteral("  ")
            + query.value(2).toString() + QLatin1Char('\n');
    return AdminOutcome::printed(output);
}

} // namespace

void WorkspaceCommands::addTo(AdminCommands& commands)
{
    commands.add(QStringLiteral("add-workspace"), addWorkspace);
    commands.add(QStringLiteral("add-member"), addMember);
    commands.add(QStringLiteral("publish"), publish);
    commands.add(QStringLiteral("comment"), comment);
    commands.add(QStringLiteral("link"), printLink);
    commands.add(QStringLiteral("workspaces"), listWorkspaces);
}
