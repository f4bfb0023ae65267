#include "TransferApi.h"

#include "BlobStore.h"
#include "Database.h"
#include "HashingFile.h"
#include "Publications.h"
#include "RequestContext.h"
#include "UploadLock.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <memory>

using namespace RequestContext;

struct TransferApi::Upload
{
    QString id;
    QString workspaceId;
    Publications::Revision revision;
    bool publish = true;
    QString text;
    // Set once the upload made its revision.
    QString revisionId;
    // What the server hashed of all the bytes, while the client's digest is awaited.
    QByteArray receivedSha256;
};

namespace {
bool isUploadPath(const QStringList& path)
{
    return path.value(0) == QLatin1String("uploads") && path.size() == 2;
}

// A name from a member is kept as data; it must only be something a
// client can show and later make safe for its own disk.
bool acceptableName(const QString& name)
{
    static const QRegularExpression control(QStringLiteral("[\\x00-\\x1f\\x7f]"));
    return !name.isEmpty() && name.toUtf8().size() <= 255 && !control.match(name).hasMatch();
}
} // namespace

TransferApi::TransferApi(const Accounts& accounts, const BlobStore& store)
    : m_accounts(accounts)
    , m_store(store)
{ }

bool TransferApi::loadUpload(HttpConnection* c, const QString& segment, const QString& userId, Upload* upload)
{
    const QString id = uuidOf(segment);
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral(
        "SELECT u.workspace_id, u.file_name, u.size, u.sha256, u.publish, "
        "u.publication_text, u.revision_id, u.folder, u.received_sha256 FROM uploads u JOIN members m ON "
        "m.workspace_id = u.workspace_id "
        "AND m.user_id = u.user_id WHERE u.id = ? AND u.user_id = ?"));
    query.addBindValue(id);
    query.addBindValue(userId);
    if (id.isEmpty() || !query.exec() || !query.next()) {
        c->respondError(404, 404, QStringLiteral("There is no such upload of yours."));
        return false;
    }
    *upload = {
        id,
        query.value(0).toString(),
        {query.value(1).toString(), query.value(2).toLongLong(), query.value(3).toString(), query.value(7).toBool()},
        query.value(4).toBool(),
        query.value(5).toString(),
        query.value(6).toString(),
        query.value(8).toString().toLatin1()};
    return true;
}

// The bytes the server has of an upload: all of them once it finished, or
// once its content is in the store but its revision is still to be made.
qint64 TransferApi::received(const Upload& upload) const
{
    const QFileInfo partial(m_store.uploadPath(upload.id));
    if (partial.exists())
        return partial.size();
    if (!upload.revisionId.isEmpty()
        || (BlobStore::isDigest(upload.revision.sha256)
            && QFileInfo::exists(m_store.contentPath(upload.revision.sha256))))
        return upload.revision.size;
    return 0;
}

void TransferApi::headersReceived(HttpConnection* c, const QStringList& path)
{
    if (!isUploadPath(path) || c->request().method != "PATCH")
        return;
    QString userId;
    Upload upload;
    if (!authenticate(m_accounts, c, &userId) || !loadUpload(c, path.value(1), userId, &upload))
        return;
    auto lock = std::unique_ptr<UploadLock>(UploadLock::take(upload.id, nullptr));
    if (!lock) {
        c->respondError(409, 409, QStringLiteral("Another request is writing this upload; ask for its offset later."));
        return;
    }
    const QString partial = m_store.uploadPath(upload.id);
    const qint64 offset = received(upload);
    bool ok = false;
    const qint64 claimed = c->request().header("upload-offset").toLongLong(&ok);
    if (!ok || claimed != offset) {
        c->respond(
            409,
            R"({"error":{"domain":"VLRWebErrorDomain","code":409,"message":"The upload goes on from another offset."}})",
            {{"Upload-Offset", QByteArray::number(offset)}});
        return;
    }
    if (offset + c->request().contentLength > upload.revision.size) {
        c->respondError(413, 413, QStringLiteral("More bytes than the upload announced."));
        return;
    }
    // Nothing more to take: the PATCH asks for the end, which its handler gives.
    if (offset == upload.revision.size)
        return;
    // Unbuffered: every byte received is the kernel's at once, so a killed
    // server process loses nothing that the offset reports.
    // From the first byte on, the bytes are hashed as they come.
    auto* sink = offset == 0 ? new HashingFile(partial, lock.get()) : new QFile(partial, lock.get());
    if (!sink->open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) {
        c->respondError(500, 500, QStringLiteral("The server can't write the upload."));
        return;
    }
    // The connection holds the lock until the body ends or the peer goes.
    lock.release()->setParent(c);
    sink->setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    c->streamBodyInto(sink);
}

bool TransferApi::handle(HttpConnection* c, const QStringList& path)
{
    const QByteArray method = c->request().method;
    const bool uploads = path.value(0) == QLatin1String("uploads");
    const bool content =
        path.value(0) == QLatin1String("revisions") && path.size() == 3 && path.value(2) == QLatin1String("content");
    const bool revision = path.value(0) == QLatin1String("revisions") && path.size() == 2;
    if (!uploads && !content && !revision)
        return false;
    QString userId;
    if (!authenticate(m_accounts, c, &userId))
        return true;
    if (content && method == "GET")
        download(c, userId, path.value(1));
    else if (revision && method == "GET")
        describeRevision(c, userId, path.value(1));
    else if (uploads && path.size() == 1 && method == "POST")
        createUpload(c, userId);
    else if (isUploadPath(path) && method == "HEAD")
        reportOffset(c, userId, path.value(1));
    else if (isUploadPath(path) && method == "PATCH")
        finishPatch(c, userId, path.value(1));
    else
        methodNotAllowed(c);
    return true;
}

void TransferApi::createUpload(HttpConnection* c, const QString& userId)
{
    QJsonObject body;
    if (!jsonBody(c, &body))
        return;
    const QString workspaceId = uuidOf(body.value(QStringLiteral("workspace")).toString());
    const QString fileName = body.value(QStringLiteral("fileName")).toString();
    const qint64 size = body.value(QStringLiteral("size")).toInteger(-1);
    const QString sha256 = body.value(QStringLiteral("sha256")).toString();
    if (workspaceId.isEmpty() || roleOf(workspaceId, userId) == 0)
        return c->respondError(404, 404, QStringLiteral("There is no such workspace, or you are not a member of it."));
    if (!acceptableName(fileName) || size < 0 || (!sha256.isEmpty() && !BlobStore::isDigest(sha256)))
        return c->respondError(422, 422,
                               QStringLiteral("An upload needs a file name, its size, and its SHA-256 in lower-case "
                                              "hex now or with its last bytes."));
    if (!m_store.hasRoomFor(size))
        return c->respondError(507, 507, QStringLiteral("The server's store has no room for this file at the moment."));
    QSqlQuery insert(Database::connection());
    insert.prepare(
        QStringLiteral("INSERT INTO uploads(user_id, workspace_id, file_name, size, sha256, publish, "
                       "publication_text, folder) VALUES (?, ?, ?, ?, ?, ?, coalesce(?, ''), ?) RETURNING id"));
    insert.addBindValue(userId);
    insert.addBindValue(workspaceId);
    insert.addBindValue(fileName);
    insert.addBindValue(size);
    insert.addBindValue(sha256.isEmpty() ? QVariant(QMetaType(QMetaType::QString)) : QVariant(sha256));
    insert.addBindValue(body.value(QStringLiteral("publish")).toBool(true));
    insert.addBindValue(body.value(QStringLiteral("text")).toString());
    insert.addBindValue(body.value(QStringLiteral("folder")).toBool(false));
    if (!insert.exec() || !insert.next()) {
        qWarning("Upload not recorded: %s", qPrintable(insert.lastError().text()));
        return databaseFailed(c);
    }
    const QString id = insert.value(0).toString();
    QFile file(m_store.uploadPath(id));
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner))
        return c->respondError(500, 500, QStringLiteral("The server can't write the upload."));
    c->respondJson(201, {{QStringLiteral("id"), id}, {QStringLiteral("offset"), 0}});
}

void TransferApi::reportOffset(HttpConnection* c, const QString& userId, const QString& segment)
{
    Upload upload;
    if (!loadUpload(c, segment, userId, &upload))
        return;
    c->respond(204, {},
               {{"Upload-Offset", QByteArray::number(received(upload))},
                {"Upload-Length", QByteArray::number(upload.revision.size)}});
}

void TransferApi::finishPatch(HttpConnection* c, const QString& userId, const QString& segment)
{
    // The lock that the body was written under is held until the upload's
    // end is settled, so that no other request makes a second revision of it.
    std::unique_ptr<UploadLock> lock(c->findChild<UploadLock*>());
    QByteArray digest;
    if (lock)
        if (auto* hashed = lock->findChild<HashingFile*>(); hashed && hashed->isOpen())
            digest = hashed->pos() == hashed->size() ? hashed->hexDigest() : QByteArray();
    Upload upload;
    if (!loadUpload(c, segment, userId, &upload))
        return;
    if (!lock)
        lock.reset(UploadLock::take(upload.id, nullptr));
    if (!lock)
        return c->respondError(409, 409,
                               QStringLiteral("Another request is writing this upload; ask for its offset later."));
    // A repeated end, when the answer to the first one was lost.
    if (!upload.revisionId.isEmpty())
        return c->respondJson(
            201, {{QStringLiteral("revision"), upload.revisionId}, {QStringLiteral("sha256"), upload.revision.sha256}});
    const qint64 offset = received(upload);
    if (offset < upload.revision.size)
        return c->respond(204, {}, {{"Upload-Offset", QByteArray::number(offset)}});
    if (!settleDigest(c, &upload, &digest))
        return;

    QString failure;
    const bool waiting = QFileInfo::exists(m_store.uploadPath(upload.id));
    const BlobStore::Commit commit =
        waiting ? m_store.commit(upload.id, upload.revision.sha256, &failure, digest) : BlobStore::Commit::Stored;
    if (commit == BlobStore::Commit::Mismatch) {
        QSqlQuery gone(Database::connection());
        gone.prepare(QStringLiteral("DELETE FROM uploads WHERE id = ?"));
        gone.addBindValue(upload.id);
        gone.exec();
        return c->respondError(422, 422, failure);
    }
    if (commit == BlobStore::Commit::Failed)
        return c->respondError(500, 500, failure + QStringLiteral(" The upload is kept."));
    const QString revisionId =
        Publications::addRevision(upload.workspaceId, userId, upload.revision, upload.publish, upload.text, upload.id);
    if (revisionId.isEmpty())
        return c->respondError(500, 500, QStringLiteral("The server's database failed; the upload is kept."));
    c->respondJson(201, {{QStringLiteral("revision"), revisionId}, {QStringLiteral("sha256"), upload.revision.sha256}});
}

// An upload announced without its SHA-256 ends with a PATCH that names it:
// until then all its bytes wait, with what the server hashed of them.
bool TransferApi::settleDigest(HttpConnection* c, Upload* upload, QByteArray* digest)
{
    if (!upload->revision.sha256.isEmpty())
        return true;
    const QByteArray named = c->request().header("upload-digest");
    const QString sha256 = named.startsWith("sha-256=") ? QString::fromLatin1(named.mid(8)) : QString();
    if (BlobStore::isDigest(sha256)) {
        upload->revision.sha256 = sha256;
        if (digest->isEmpty())
            *digest = upload->receivedSha256;
        return true;
    }
    if (!digest->isEmpty()) {
        QSqlQuery keep(Database::connection());
        keep.prepare(QStringLiteral("UPDATE uploads SET received_sha256 = ? WHERE id = ?"));
        keep.addBindValue(QString::fromLatin1(*digest));
        keep.addBindValue(upload->id);
        keep.exec();
    }
    c->respond(204, {}, {{"Upload-Offset", QByteArray::number(upload->revision.size)}});
    return false;
}

// A revision in one of the user's workspaces; false after answering 404.
bool TransferApi::loadRevision(HttpConnection* c, const QString& userId, const QString& id,
                               Publications::Revision* revision, QString* workspaceId)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT r.workspace_id, r.file_name, r.size, r.sha256, r.folder FROM revisions r JOIN "
                                 "members m ON m.workspace_id = r.workspace_id AND m.user_id = ? WHERE r.id = ?"));
    query.addBindValue(userId);
    query.addBindValue(id);
    if (id.isEmpty() || !query.exec() || !query.next()) {
        c->respondError(404, 404, QStringLiteral("There is no such revision in your workspaces."));
        return false;
    }
    *workspaceId = query.value(0).toString();
    *revision = {query.value(1).toString(), query.value(2).toLongLong(), query.value(3).toString(),
                 query.value(4).toBool()};
    return true;
}

void TransferApi::describeRevision(HttpConnection* c, const QString& userId, const QString& segment)
{
    const QString id = uuidOf(segment);
    Publications::Revision revision;
    QString workspaceId;
    if (!loadRevision(c, userId, id, &revision, &workspaceId))
        return;
    c->respondJson(200,
                   {{QStringLiteral("id"), id},
                    {QStringLiteral("workspace"), workspaceId},
                    {QStringLiteral("fileName"), revision.fileName},
                    {QStringLiteral("size"), revision.size},
                    {QStringLiteral("sha256"), revision.sha256},
                    {QStringLiteral("folder"), revision.folder}});
}

void TransferApi::download(HttpConnection* c, const QString& userId, const QString& segment)
{
    Publications::Revision revision;
    QString workspaceId;
    if (!loadRevision(c, userId, uuidOf(segment), &revision, &workspaceId))
        return;
    serveContent(c, m_store, revision.size, revision.sha256, revision.folder ? folderType.toByteArray() : QByteArray());
}

void TransferApi::serveContent(HttpConnection* c, const BlobStore& store, qint64 size, const QString& sha256,
                               const QByteArray& contentType)
{
    auto file = std::make_unique<QFile>(store.contentPath(sha256));
    if (!file->open(QIODevice::ReadOnly) || file->size() != size)
        return c->respondError(500, 500, QStringLiteral("The content is missing from the store."));

    qint64 first = 0;
    qint64 last = size - 1;
    int status = 200;
    const QByteArray range = c->request().header("range");
    if (!range.isEmpty()) {
        static const QRegularExpression form(QStringLiteral("^bytes=(\\d*)-(\\d*)$"));
        const auto match = form.match(QString::fromLatin1(range));
        const QString from = match.captured(1);
        const QString to = match.captured(2);
        if (!match.hasMatch() || (from.isEmpty() && to.isEmpty()))
            return c->respondError(416, 416, QStringLiteral("The range is not one this server reads."));
        if (from.isEmpty()) {
            first = qMax<qint64>(0, size - to.toLongLong());
        } else {
            first = from.toLongLong();
            if (!to.isEmpty())
                last = qMin(last, to.toLongLong());
        }
        if (first >= size || first > last)
            return c->respond(416, {}, {{"Content-Range", "bytes */" + QByteArray::number(size)}});
        status = 206;
    }
    QList<std::pair<QByteArray, QByteArray>> headers{{"Accept-Ranges", "bytes"},
                                                     {"Digest", "sha-256=" + sha256.toLatin1()}};
    if (status == 206)
        headers.append(
            {"Content-Range",
             "bytes " + QByteArray::number(first) + '-' + QByteArray::number(last) + '/' + QByteArray::number(size)});
    const qint64 length = size == 0 ? 0 : last - first + 1;
    c->respondFile(status, std::move(file), first, length, headers, contentType);
}
