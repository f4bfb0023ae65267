#include "Publications.h"

#include "Database.h"
#include "EventHub.h"

#include <QJsonObject>
#include <QSqlQuery>
#include <QVariant>

namespace {
QString insertPublication(const QString& workspaceId, const QString& userId, const QString& text,
                          const QString& revisionId, const QJsonObject& revision)
{
    QSqlQuery insert(Database::connection());
    insert.prepare(QStringLiteral(
        "INSERT INTO publications(workspace_id, user_id, text, revision_id) VALUES (?, ?, "
        "coalesce(?, ''), ?) RETURNING id, (SELECT first_name FROM users WHERE id = user_id), (SELECT email "
        "FROM users WHERE id = user_id)"));
    insert.addBindValue(workspaceId);
    insert.addBindValue(userId);
    insert.addBindValue(text);
    insert.addBindValue(revisionId.isEmpty() ? QVariant(QMetaType(QMetaType::QString)) : QVariant(revisionId));
    if (!insert.exec() || !insert.next())
        return {};
    QSqlQuery touch(Database::connection());
    touch.prepare(QStringLiteral("UPDATE workspaces SET updated_at = now() WHERE id = ?"));
    touch.addBindValue(workspaceId);
    QJsonObject data{{QStringLiteral("id"), insert.value(0).toString()},
                     {QStringLiteral("userID"), userId},
                     {QStringLiteral("userFirstName"), insert.value(1).toString()},
                     {QStringLiteral("userEmail"), insert.value(2).toString()},
                     {QStringLiteral("text"), text}};
    if (!revision.isEmpty())
        data.insert(QStringLiteral("revision"), revision);
    if (!touch.exec() || !EventHub::record(workspaceId, QStringLiteral("publication"), data))
        return {};
    return insert.value(0).toString();
}

QString finish(QSqlDatabase& db, const QString& id)
{
    if (!id.isEmpty() && db.commit())
        return id;
    db.rollback();
    return {};
}
} // namespace

QString Publications::publishText(const QString& workspaceId, const QString& userId, const QString& text)
{
    QSqlDatabase db = Database::connection();
    db.transaction();
    return finish(db, insertPublication(workspaceId, userId, text, {}, {}));
}

QString Publications::addRevision(const QString& workspaceId, const QString& userId, const Revision& revision,
                                  bool publish, const QString& text, const QString& finishedUpload)
{
    QSqlDatabase db = Database::connection();
    db.transaction();
    QSqlQuery insert(db);
    insert.prepare(
        QStringLiteral("INSERT INTO revisions(workspace_id, user_id, file_name, size, sha256, folder) VALUES "
                       "(?, ?, ?, ?, ?, ?) RETURNING id"));
    insert.addBindValue(workspaceId);
    insert.addBindValue(userId);
    insert.addBindValue(revision.fileName);
    insert.addBindValue(revision.size);
    insert.addBindValue(revision.sha256);
    insert.addBindValue(revision.folder);
    if (!insert.exec() || !insert.next())
        return finish(db, {});
    const QString revisionId = insert.value(0).toString();
    const QJsonObject described{{QStringLiteral("id"), revisionId},
                                {QStringLiteral("fileName"), revision.fileName},
                                {QStringLiteral("size"), revision.size},
                                {QStringLiteral("sha256"), revision.sha256},
                                {QStringLiteral("folder"), revision.folder}};
    if (publish && insertPublication(workspaceId, userId, text, revisionId, described).isEmpty())
        return finish(db, {});
    // Whose it is lets the uploader's own clients leave it alone.
    QJsonObject unpublished = described;
    unpublished.insert(QStringLiteral("userID"), userId);
    if (!publish && !EventHub::record(workspaceId, QStringLiteral("revision"), unpublished))
        return finish(db, {});
    if (!finishedUpload.isEmpty()) {
        QSqlQuery finished(db);
        finished.prepare(
            QStringLiteral("UPDATE uploads SET revision_id = ?, sha256 = ?, finished_at = now() WHERE id = ?"));
        finished.addBindValue(revisionId);
        finished.addBindValue(revision.sha256);
        finished.addBindValue(finishedUpload);
        if (!finished.exec())
            return finish(db, {});
    }
    return finish(db, revisionId);
}
