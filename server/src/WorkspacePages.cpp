#include "WorkspacePages.h"

#include "BlobStore.h"
#include "Database.h"
#include "HttpConnection.h"
#include "RequestContext.h"
#include "TransferApi.h"
#include "WebReply.h"
#include "WebTemplate.h"

#include <QFile>
#include <QLocale>
#include <QSqlQuery>
#include <QUrl>
#include <QVariant>

#include <memory>

using namespace WebReply;

namespace {
QString stamp(const QVariant& value)
{
    return value.toDateTime().toUTC().toString(QStringLiteral("yyyy-MM-dd HH:mm 'UTC'"));
}

QString sizeText(qint64 size)
{
    return QLocale::c().formattedDataSize(size, 1, QLocale::DataSizeSIFormat);
}

QString fileLink(const QString& workspaceId, const QVariant& revisionId, const QVariant& fileName, const QVariant& size)
{
    return WebTemplate(QStringLiteral("file_link"))
        .set(QStringLiteral("href"), QStringLiteral("/workspaces/%1/files/%2").arg(workspaceId, revisionId.toString()))
        .set(QStringLiteral("name"), fileName.toString())
        .set(QStringLiteral("size"), sizeText(size.toLongLong()))
        .render();
}

// The name a browser saves a file under: the member's name in UTF-8, and a
// plain ASCII form for browsers that don't read that.
QByteArray dispositionOf(const QString& fileName)
{
    QByteArray plain = fileName.toUtf8();
    for (char& ch : plain)
        if (uchar(ch) < 0x20 || uchar(ch) >= 0x7f || ch == '"' || ch == '\\' || ch == '/')
            ch = '_';
    return "attachment; filename=\"" + plain + "\"; filename*=UTF-8''" + QUrl::toPercentEncoding(fileName);
}
} // namespace

WorkspacePages::WorkspacePages(const WebSessions& sessions, const BlobStore& store)
    : m_sessions(sessions)
    , m_store(store)
{ }

bool WorkspacePages::handle(HttpConnection* c, const QString& path)
{
    const QStringList parts = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    if (path != QLatin1String("/") && parts.value(0) != QLatin1String("workspaces"))
        return false;
    const WebSessions::Session session = m_sessions.find(c->request());
    if (!session.isSignedIn()) {
        signInFirst(c, path);
        return true;
    }
    if (path == QLatin1String("/")) {
        index(c, session);
        return true;
    }
    const QString workspaceId = RequestContext::uuidOf(parts.value(1));
    QString name;
    if (!workspaceId.isEmpty() && RequestContext::roleOf(workspaceId, session.userId) > 0) {
        QSqlQuery query(Database::connection());
        query.prepare(QStringLiteral("SELECT name FROM workspaces WHERE id = ?"));
        query.addBindValue(workspaceId);
        if (query.exec() && query.next())
            name = query.value(0).toString();
    }
    if (name.isEmpty() || c->request().method != "GET")
        notFound(c, session);
    else if (parts.size() == 2)
        workspace(c, session, workspaceId, name);
    else if (parts.size() == 3 && parts[2] == QLatin1String("assets"))
        assets(c, session, workspaceId, name);
    else if (parts.size() == 4 && parts[2] == QLatin1String("files"))
        file(c, session, workspaceId, RequestContext::uuidOf(parts[3]));
    else
        notFound(c, session);
    return true;
}

void WorkspacePages::index(HttpConnection* c, const WebSessions::Session& session)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT w.id, w.name, w.updated_at FROM workspaces w JOIN members m ON m.workspace_id "
                                 "= w.id WHERE m.user_id = ? ORDER BY w.updated_at DESC"));
    query.addBindValue(session.userId);
    QString rows;
    if (query.exec())
        while (query.next())
            rows += WebTemplate(QStringLiteral("workspace_row"))
                        .set(QStringLiteral("href"), QStringLiteral("/workspaces/") + query.value(0).toString())
                        .set(QStringLiteral("name"), query.value(1).toString())
                        .set(QStringLiteral("updated"), stamp(query.value(2)))
                        .render();
    if (rows.isEmpty())
        rows = WebTemplate(QStringLiteral("empty_row"))
                   .set(QStringLiteral("text"), QStringLiteral("No workspaces yet."))
                   .render();
    page(c, 200, session, QStringLiteral("Your workspaces"),
         WebTemplate(QStringLiteral("workspaces")).setHtml(QStringLiteral("rows"), rows).render());
}

void WorkspacePages::workspace(HttpConnection* c, const WebSessions::Session& session, const QString& workspaceId,
                               const QString& name)
{
    QSqlQuery members(Database::connection());
    members.prepare(QStringLiteral("SELECT u.first_name, u.last_name, u.email, m.role FROM members m JOIN users u ON "
                                   "u.id = m.user_id WHERE m.workspace_id = ? ORDER BY m.role, u.email"));
    members.addBindValue(workspaceId);
    QString memberRows;
    if (members.exec())
        while (members.next()) {
            const QString fullName =
                QStringLiteral("%1 %2").arg(members.value(0).toString(), members.value(1).toString()).trimmed();
            memberRows +=
                WebTemplate(QStringLiteral("member_row"))
                    .set(QStringLiteral("name"), fullName.isEmpty() ? members.value(2).toString() : fullName)
                    .set(QStringLiteral("email"), fullName.isEmpty() ? QString() : members.value(2).toString())
                    .set(QStringLiteral("role"),
                         members.value(3).toInt() == 1 ? QStringLiteral("Owner") : QStringLiteral("Member"))
                    .render();
        }

    QSqlQuery publications(Database::connection());
    publications.prepare(QStringLiteral(
        "SELECT u.first_name, u.email, p.text, p.created_at, r.id, r.file_name, r.size FROM publications p JOIN users "
        "u ON u.id = p.user_id LEFT JOIN revisions r ON r.id = p.revision_id WHERE p.workspace_id = ? ORDER BY "
        "p.created_at DESC LIMIT ?"));
    publications.addBindValue(workspaceId);
    publications.addBindValue(latestPublications);
    QString publicationRows;
    if (publications.exec())
        while (publications.next()) {
            const QString author = publications.value(0).toString();
            publicationRows +=
                WebTemplate(QStringLiteral("publication_row"))
                    .set(QStringLiteral("author"), author.isEmpty() ? publications.value(1).toString() : author)
                    .set(QStringLiteral("date"), stamp(publications.value(3)))
                    .set(QStringLiteral("text"), publications.value(2).toString())
                    .setHtml(QStringLiteral("file"),
                             publications.value(4).isNull() ? QString()
                                                            : fileLink(workspaceId, publications.value(4),
                                                                       publications.value(5), publications.value(6)))
                    .render();
        }
    if (publicationRows.isEmpty())
        publicationRows = WebTemplate(QStringLiteral("empty_row"))
                              .set(QStringLiteral("text"), QStringLiteral("Nothing has been published here yet."))
                              .render();
    page(c, 200, session, name,
         WebTemplate(QStringLiteral("workspace"))
             .set(QStringLiteral("name"), name)
             .set(QStringLiteral("assets"), QStringLiteral("/workspaces/%1/assets").arg(workspaceId))
             .setHtml(QStringLiteral("members"), memberRows)
             .setHtml(QStringLiteral("publications"), publicationRows)
             .render());
}

void WorkspacePages::assets(HttpConnection* c, const WebSessions::Session& session, const QString& workspaceId,
                            const QString& name)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT r.id, r.file_name, r.size, r.created_at, u.first_name, u.email FROM revisions "
                                 "r JOIN users u ON u.id = r.user_id WHERE r.workspace_id = ? ORDER BY r.created_at "
                                 "DESC"));
    query.addBindValue(workspaceId);
    QString rows;
    if (query.exec())
        while (query.next()) {
            const QString author = query.value(4).toString();
            rows += WebTemplate(QStringLiteral("asset_row"))
                        .setHtml(QStringLiteral("file"),
                                 fileLink(workspaceId, query.value(0), query.value(1), query.value(2)))
                        .set(QStringLiteral("author"), author.isEmpty() ? query.value(5).toString() : author)
                        .set(QStringLiteral("date"), stamp(query.value(3)))
                        .render();
        }
    if (rows.isEmpty())
        rows = WebTemplate(QStringLiteral("empty_row"))
                   .set(QStringLiteral("text"), QStringLiteral("No files yet."))
                   .render();
    page(c, 200, session, name + QStringLiteral(": assets"),
         WebTemplate(QStringLiteral("assets"))
             .set(QStringLiteral("name"), name)
             .set(QStringLiteral("workspace"), QStringLiteral("/workspaces/") + workspaceId)
             .setHtml(QStringLiteral("rows"), rows)
             .render());
}

void WorkspacePages::file(HttpConnection* c, const WebSessions::Session& session, const QString& workspaceId,
                          const QString& revisionId)
{
    QSqlQuery query(Database::connection());
    query.prepare(
        QStringLiteral("SELECT file_name, size, sha256, folder FROM revisions WHERE id = ? AND workspace_id = ?"));
    query.addBindValue(revisionId);
    query.addBindValue(workspaceId);
    if (revisionId.isEmpty() || !query.exec() || !query.next())
        return notFound(c, session);
    const qint64 size = query.value(1).toLongLong();
    const QString sha256 = query.value(2).toString();
    auto content = std::make_unique<QFile>(m_store.contentPath(sha256));
    if (!BlobStore::isDigest(sha256) || !content->open(QIODevice::ReadOnly) || content->size() != size)
        return message(c, 500, session, QStringLiteral("File missing"),
                       QStringLiteral("The file's content is missing on the server. Tell whoever runs it."));
    // A folder reaches the browser as the tar that it is stored as.
    const bool folder = query.value(3).toBool();
    c->respondFile(200, std::move(content), 0, size,
                   {{"Content-Disposition", dispositionOf(query.value(0).toString() + (folder ? ".tar" : ""))},
                    {"X-Content-Type-Options", "nosniff"},
                    {"Cache-Control", "private, no-store"}},
                   folder ? TransferApi::folderType.toByteArray() : QByteArray());
}
