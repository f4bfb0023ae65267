#include "sdk/workspaces/WorkspaceStore.h"

#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/base/SqlStatement.h"

WorkspaceStore::WorkspaceStore(Database& database)
    : m_database(database)
{ }

// Members of every workspace that the query's key selects, grouped by
// workspace, owners first. Each avatar is decoded once, however many
// workspaces its person is in.
std::optional<QList<WorkspaceStore::Member>> WorkspaceStore::membersOf(const char* sql, const QString& key,
                                                                       QHash<QString, QList<Member>>* byWorkspace)
{
    SqlStatement statement(m_database.handle(), sql);
    statement.bind(1, key);
    QHash<QString, QImage> avatars;
    QList<Member> all;
    while (statement.next()) {
        Member member;
        member.userId = statement.text(1);
        member.firstName = statement.text(2);
        member.lastName = statement.text(3);
        member.role = statement.integer(4);
        if (!statement.isNull(5)) {
            auto found = avatars.find(member.userId);
            if (found == avatars.end())
                found = avatars.insert(member.userId, QImage::fromData(statement.blob(5)));
            member.avatar = *found;
        }
        if (byWorkspace)
            (*byWorkspace)[statement.text(0)].append(member);
        else
            all.append(member);
    }
    if (statement.failed())
        return std::nullopt;
    return all;
}

std::optional<QList<WorkspaceStore::Workspace>> WorkspaceStore::workspacesOf(const QString& userId)
{
    QHash<QString, QList<Member>> members;
    if (!membersOf("SELECT m.workspace_id, u.id, u.first_name, u.last_name, m.role, u.avatar FROM members m "
                   "JOIN users u ON u.id = m.user_id "
                   "WHERE m.workspace_id IN (SELECT workspace_id FROM members WHERE user_id = ?1) "
                   "ORDER BY m.role, m.joined_at, u.email",
                   userId, &members))
        return std::nullopt;
    SqlStatement statement(m_database.handle(),
                           "SELECT w.id, w.name, w.updated_at FROM workspaces w "
                           "JOIN members m ON m.workspace_id = w.id WHERE m.user_id = ?1 "
                           "ORDER BY w.updated_at DESC, w.name, w.id");
    statement.bind(1, userId);
    QList<Workspace> workspaces;
    while (statement.next()) {
        Workspace workspace{statement.text(0), statement.text(1), statement.integer(2), {}};
        workspace.members = members.value(workspace.id);
        workspaces.append(workspace);
    }
    if (statement.failed())
        return std::nullopt;
    return workspaces;
}

std::optional<WorkspaceStore::Workspace> WorkspaceStore::workspace(const QString& workspaceId)
{
    SqlStatement statement(m_database.handle(), "SELECT id, name, updated_at FROM workspaces WHERE id = ?1");
    statement.bind(1, workspaceId);
    if (!statement.next())
        return std::nullopt;
    Workspace workspace{statement.text(0), statement.text(1), statement.integer(2), {}};
    const auto members = membersOf("SELECT m.workspace_id, u.id, u.first_name, u.last_name, m.role, u.avatar "
                                   "FROM members m JOIN users u ON u.id = m.user_id WHERE m.workspace_id = ?1 "
                                   "ORDER BY m.role, m.joined_at, u.email",
                                   workspaceId, nullptr);
    if (!members)
        return std::nullopt;
    workspace.members = *members;
    return workspace;
}

std::optional<QList<WorkspaceStore::Asset>> WorkspaceStore::assetsOf(const QString& userId)
{
    SqlStatement statement(m_database.handle(),
                           "SELECT a.id, a.workspace_id, a.name, (SELECT max(number) FROM revisions r "
                           "WHERE r.asset_id = a.id) FROM assets a "
                           "JOIN members m ON m.workspace_id = a.workspace_id AND m.user_id = ?1 "
                           "ORDER BY a.workspace_id, a.name");
    statement.bind(1, userId);
    QList<Asset> assets;
    while (statement.next())
        assets.append(Asset{statement.text(0), statement.text(1), statement.text(2), statement.integer(3)});
    if (statement.failed())
        return std::nullopt;
    return assets;
}

qint64 WorkspaceStore::workspaceCountOf(const QString& userId)
{
    SqlStatement statement(m_database.handle(), "SELECT count(*) FROM members WHERE user_id = ?1");
    statement.bind(1, userId);
    return statement.next() ? statement.integer(0) : 0;
}

bool WorkspaceStore::isMember(const QString& workspaceId, const QString& userId)
{
    SqlStatement statement(m_database.handle(), "SELECT 1 FROM members WHERE workspace_id = ?1 AND user_id = ?2");
    statement.bind(1, workspaceId).bind(2, userId);
    return statement.next();
}

QString WorkspaceStore::create(const QString& name, const QString& ownerId, qint64 updatedAt)
{
    const QString id = Clock::newIdentifier();
    const bool created = m_database.transaction([&] {
        SqlStatement insert(m_database.handle(),
                            "INSERT INTO workspaces(id, name, created_at, updated_at) VALUES(?1, ?2, ?3, ?3)");
        return insert.bind(1, id).bind(2, name).bind(3, updatedAt).run() && addMember(id, ownerId, OwnerRole);
    });
    return created ? id : QString();
}

bool WorkspaceStore::addMember(const QString& workspaceId, const QString& userId, qint64 role)
{
    SqlStatement statement(m_database.handle(),
                           "INSERT INTO members(workspace_id, user_id, role, joined_at) VALUES(?1, ?2, ?3, ?4) "
                           "ON CONFLICT(workspace_id, user_id) DO UPDATE SET role = excluded.role");
    return statement.bind(1, workspaceId).bind(2, userId).bind(3, role).bind(4, Clock::nowMs()).run();
}

bool WorkspaceStore::touch(const QString& workspaceId, qint64 when)
{
    SqlStatement statement(m_database.handle(), "UPDATE workspaces SET updated_at = max(updated_at, ?2) WHERE id = ?1");
    return statement.bind(1, workspaceId).bind(2, when).run();
}

qint64 WorkspaceStore::publishText(const QString& workspaceId, const QString& userId, const QString& text)
{
    qint64 seq = 0;
    const qint64 now = Clock::nowMs();
    const bool published = m_database.transaction([&] {
        SqlStatement insert(m_database.handle(),
                            "INSERT INTO publications(workspace_id, user_id, text, created_at) "
                            "VALUES(?1, ?2, ?3, ?4) RETURNING seq");
        insert.bind(1, workspaceId).bind(2, userId).bind(3, text.isNull() ? QStringLiteral("") : text).bind(4, now);
        if (!insert.next())
            return false;
        seq = insert.integer(0);
        return insert.run() && touch(workspaceId, now);
    });
    // The number is handed out before the commit, which can still fail.
    return published ? seq : 0;
}

QString WorkspaceStore::addRevision(const QString& workspaceId, const QString& userId, const QString& assetName,
                                    const QString& content, bool isFolder, qint64 size, const QString& text)
{
    const QString revisionId = Clock::newIdentifier();
    const qint64 now = Clock::nowMs();
    const bool added = m_database.transaction([&] {
        SqlStatement asset(m_database.handle(),
                           "INSERT INTO assets(id, workspace_id, name) VALUES(?1, ?2, ?3) "
                           "ON CONFLICT(workspace_id, name) DO UPDATE SET name = excluded.name RETURNING id");
        asset.bind(1, Clock::newIdentifier()).bind(2, workspaceId).bind(3, assetName);
        if (!asset.next())
            return false;
        const QString assetId = asset.text(0);
        if (!asset.run())
            return false;
        SqlStatement revision(m_database.handle(),
                              "INSERT INTO revisions(id, asset_id, number, content, is_folder, size, author_id, "
                              "created_at) VALUES(?1, ?2, (SELECT coalesce(max(number), 0) + 1 FROM revisions "
                              "WHERE asset_id = ?2), ?3, ?4, ?5, ?6, ?7)");
        revision.bind(1, revisionId).bind(2, assetId).bind(3, content).bind(4, isFolder).bind(5, size);
        revision.bind(6, userId).bind(7, now);
        SqlStatement publication(m_database.handle(),
                                 "INSERT INTO publications(workspace_id, user_id, revision_id, text, created_at) "
                                 "VALUES(?1, ?2, ?3, ?4, ?5)");
        publication.bind(1, workspaceId).bind(2, userId).bind(3, revisionId);
        publication.bind(4, text.isNull() ? QStringLiteral("") : text).bind(5, now);
        return revision.run() && publication.run() && touch(workspaceId, now);
    });
    return added ? revisionId : QString();
}

#define REVISION_COLUMNS                                                                                               \
    "SELECT r.id, r.asset_id, a.name, a.workspace_id, w.name, r.number, r.content, r.is_folder, r.size "               \
    "FROM revisions r JOIN assets a ON a.id = r.asset_id JOIN workspaces w ON w.id = a.workspace_id "

namespace {

std::optional<WorkspaceStore::Revision> readRevision(SqlStatement& statement)
{
    if (!statement.next())
        return std::nullopt;
    return WorkspaceStore::Revision{statement.text(0), statement.text(1),         statement.text(2),
                                    statement.text(3), statement.text(4),         statement.integer(5),
                                    statement.text(6), statement.integer(7) != 0, statement.integer(8)};
}

} // namespace

std::optional<WorkspaceStore::Revision> WorkspaceStore::revision(const QString& revisionId)
{
    SqlStatement statement(m_database.handle(), REVISION_COLUMNS "WHERE r.id = ?1");
    statement.bind(1, revisionId);
    return readRevision(statement);
}

std::optional<WorkspaceStore::Revision> WorkspaceStore::latestRevision(const QString& assetId)
{
    SqlStatement statement(m_database.handle(),
                           REVISION_COLUMNS "WHERE r.asset_id = ?1 ORDER BY r.number DESC LIMIT 1");
    statement.bind(1, assetId);
    return readRevision(statement);
}

std::optional<QList<WorkspaceStore::Publication>> WorkspaceStore::publicationsSince(const QString& userId,
                                                                                    qint64 afterSeq)
{
    SqlStatement statement(m_database.handle(),
                           "SELECT p.seq, p.workspace_id, p.user_id, coalesce(u.first_name, ''), u.email, "
                           "coalesce(a.name, ''), p.text, p.revision_id FROM publications p "
                           "JOIN members m ON m.workspace_id = p.workspace_id AND m.user_id = ?1 "
                           "LEFT JOIN users u ON u.id = p.user_id "
                           "LEFT JOIN revisions r ON r.id = p.revision_id LEFT JOIN assets a ON a.id = r.asset_id "
                           "WHERE p.seq > ?2 ORDER BY p.seq");
    statement.bind(1, userId).bind(2, afterSeq);
    QList<Publication> publications;
    while (statement.next())
        publications.append(Publication{statement.integer(0), statement.text(1), statement.text(2), statement.text(3),
                                        statement.text(4), statement.text(5), statement.text(6), statement.text(7)});
    if (statement.failed())
        return std::nullopt;
    return publications;
}

qint64 WorkspaceStore::lastPublicationSeq()
{
    SqlStatement statement(m_database.handle(), "SELECT coalesce(max(seq), 0) FROM publications");
    return statement.next() ? statement.integer(0) : 0;
}

qint64 WorkspaceStore::catalogVersion()
{
    SqlStatement statement(m_database.handle(), "SELECT version FROM catalog");
    return statement.next() ? statement.integer(0) : -1;
}
