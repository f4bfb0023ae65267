#include "AdminApi.h"

#include "AccountCommands.h"
#include "BlobStore.h"
#include "Database.h"
#include "DemoCommand.h"
#include "HashingFile.h"
#include "HttpConnection.h"
#include "MarketAdmin.h"
#include "RequestContext.h"
#include "SlowWork.h"
#include "WorkspaceCommands.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QSqlQuery>
#include <QUrl>
#include <QUuid>
#include <QVariant>

using namespace RequestContext;

namespace {
const QString blobSinkName = QStringLiteral("veluria-admin-blob");

// The bytes of a blob while they arrive, hashed as they come; whatever is
// left of them when the request ends (committed or not) goes with it.
class IncomingBlob : public HashingFile
{
public:
    IncomingBlob(const QString& path, QObject* parent)
        : HashingFile(path, parent)
    {
        setObjectName(blobSinkName);
    }
    ~IncomingBlob() override
    {
        close();
        if (!m_kept)
            remove();
    }
    // The bytes are complete: someone else takes care of them now.
    QString keep()
    {
        m_kept = true;
        close();
        return fileName();
    }

private:
    bool m_kept = false;
};

bool isBlobPath(const QStringList& path)
{
    return path == QStringList{QStringLiteral("admin"), QStringLiteral("blobs")};
}
} // namespace

AdminApi::AdminApi(const Accounts& accounts, const BlobStore& store)
    : m_accounts(accounts)
    , m_store(store)
{
    AccountCommands::addTo(m_commands);
    WorkspaceCommands::addTo(m_commands);
    DemoCommand::addTo(m_commands);
    MarketAdmin::addTo(m_commands);
}

bool AdminApi::isAdministrator(const QString& userId)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT administrator FROM users WHERE id = ?"));
    query.addBindValue(userId);
    return query.exec() && query.next() && query.value(0).toBool();
}

bool AdminApi::admitted(HttpConnection* c, QString* userId) const
{
    if (!authenticate(m_accounts, c, userId))
        return false;
    if (isAdministrator(*userId))
        return true;
    c->respondError(403, 403, QStringLiteral("Only an administrator of this server may do this."));
    return false;
}

void AdminApi::headersReceived(HttpConnection* c, const QStringList& path)
{
    if (!isBlobPath(path) || c->request().method != "POST")
        return;
    QString userId;
    if (!admitted(c, &userId))
        return;
    auto* sink = new IncomingBlob(m_store.uploadPath(QUuid::createUuid().toString(QUuid::WithoutBraces)), c);
    if (!sink->open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        delete sink;
        c->respondError(500, 500, QStringLiteral("The server can't write the file."));
        return;
    }
    sink->setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    c->streamBodyInto(sink);
}

bool AdminApi::handle(HttpConnection* c, const QStringList& path)
{
    if (path.value(0) != QLatin1String("admin"))
        return false;
    if (path.size() != 2 || c->request().method != "POST") {
        c->respondError(405, 405, QStringLiteral("Administrative commands are sent with POST /v1/admin/<command>."));
        return true;
    }
    if (isBlobPath(path))
        return storeBlob(c), true;
    QString userId;
    if (admitted(c, &userId))
        run(c, path.value(1), userId);
    return true;
}

void AdminApi::storeBlob(HttpConnection* c)
{
    // Without a sink the headers were answered already (not an administrator).
    std::unique_ptr<IncomingBlob> sink(static_cast<IncomingBlob*>(c->findChild<QFile*>(blobSinkName)));
    if (!sink)
        return;
    const QByteArray digest = sink->hexDigest();
    const QString partial = sink->keep();
    sink.reset();
    // Syncing a large file takes a while: not on the connection's thread.
    struct Stored
    {
        QString sha256;
        qint64 size = 0;
        QString failure;
    };
    SlowWork::run<Stored>(
        c,
        [partial, digest, store = &m_store] {
            Stored stored{QString::fromLatin1(digest), QFileInfo(partial).size(), {}};
            if (store->commit(partial.section(QLatin1Char('/'), -1), stored.sha256, &stored.failure, digest)
                != BlobStore::Commit::Stored) {
                QFile::remove(partial);
                stored.sha256.clear();
            }
            return stored;
        },
        [c](const Stored& stored) {
            if (stored.sha256.isEmpty())
                return c->respondError(500, 500,
                                       QStringLiteral("The store can't take the file: %1").arg(stored.failure));
            c->respondJson(201, {{QStringLiteral("sha256"), stored.sha256}, {QStringLiteral("size"), stored.size}});
        });
}

void AdminApi::run(HttpConnection* c, const QString& command, const QString& userId)
{
    const AdminCommands::Handler* handler = m_commands.find(command);
    if (!handler)
        return c->respondError(404, 404, QStringLiteral("unknown command %1").arg(command));
    QJsonObject body;
    if (!jsonBody(c, &body))
        return;
    AdminCall call;
    for (const QJsonValue& argument : body.value(QStringLiteral("arguments")).toArray())
        call.arguments.append(argument.toString());
    call.options = body.value(QStringLiteral("options")).toObject();
    call.files = body.value(QStringLiteral("files")).toObject();
    for (const QJsonValue& key : body.value(QStringLiteral("folders")).toArray())
        call.folders.append(key.toString());
    call.administratorId = userId;
    call.host = QUrl(QStringLiteral("https://") + QString::fromLatin1(c->request().header("host"))).host();
    call.store = &m_store;
    // Commands hash passwords, read pictures and files: on the pool for slow work.
    SlowWork::run<AdminOutcome>(
        c, [handler, call] { return (*handler)(call); },
        [c](const AdminOutcome& outcome) {
            if (outcome.status == 200)
                c->respondJson(200, {{QStringLiteral("output"), outcome.output}});
            else
                c->respondError(outcome.status, outcome.status, outcome.failure);
        });
}
