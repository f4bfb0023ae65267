#include "Server.h"

#include "ConnectionThread.h"
#include "Database.h"
#include "HttpConnection.h"
#include "Listener.h"
#include "RequestContext.h"
#include "SlowWork.h"
#include "UploadLock.h"
#include "UploadSweeper.h"

#include <QFile>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslSocket>

namespace {
// Path segments after /v1, or an empty list for any other path.
QStringList segmentsOf(const QString& path)
{
    QStringList segments = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    if (segments.value(0) != QLatin1String("v1"))
        return {};
    segments.removeFirst();
    return segments;
}

bool loadTls(const ServerConfig& config, QSslConfiguration* tls, QString* failure)
{
    QFile certificateFile(config.certificatePath);
    QFile keyFile(config.keyPath);
    if (!certificateFile.open(QIODevice::ReadOnly) || !keyFile.open(QIODevice::ReadOnly)) {
        *failure = QStringLiteral("The certificate or its key can't be read.");
        return false;
    }
    const QList<QSslCertificate> chain = QSslCertificate::fromData(certificateFile.readAll(), QSsl::Pem);
    const QByteArray keyData = keyFile.readAll();
    QSslKey key(keyData, QSsl::Ec, QSsl::Pem);
    if (key.isNull())
        key = QSslKey(keyData, QSsl::Rsa, QSsl::Pem);
    if (chain.isEmpty() || key.isNull()) {
        *failure = QStringLiteral("The certificate or its key is not in PEM form.");
        return false;
    }
    *tls = QSslConfiguration::defaultConfiguration();
    tls->setLocalCertificateChain(chain);
    tls->setPrivateKey(key);
    tls->setPeerVerifyMode(QSslSocket::VerifyNone);
    tls->setProtocol(QSsl::TlsV1_2OrLater);
    return true;
}
} // namespace

Server::Server(const ServerConfig& config, QObject* parent)
    : QObject(parent)
    , m_config(config)
    , m_accounts(config.sessionLifetimeSeconds)
    , m_store(config.storePath)
    , m_api(m_accounts)
    , m_transfers(m_accounts, m_store)
    , m_admin(m_accounts, m_store)
    , m_avatars(m_accounts, m_store)
    , m_manifest(config.manifestPath)
    , m_web(config, m_accounts, m_store)
    , m_market(m_accounts, m_store)
{ }

Server::~Server()
{
    // Nothing may come back to a connection thread once it is gone.
    m_listener.reset();
    SlowWork::waitForAll();
    m_threads.clear();
}

bool Server::start(QString* failure)
{
    if (!m_store.prepare(failure) || !m_hub.listen(failure))
        return false;
    m_manifest.check();
    QSslConfiguration tls;
    if (m_config.tls && !loadTls(m_config, &tls, failure))
        return false;
    for (int i = 0; i < m_config.threads; ++i)
        m_threads.push_back(std::make_unique<ConnectionThread>(
            m_config.tls ? &tls : nullptr, [this](HttpConnection* c) { serve(c); }, i));
    m_listener = std::make_unique<Listener>([this, next = size_t(0)](qintptr descriptor) mutable {
        m_threads[next++ % m_threads.size()]->take(descriptor);
    });
    if (!m_listener->listen(m_config.listenAddress, m_config.port)) {
        *failure = QStringLiteral("The server can't listen on %1 port %2: %3")
                       .arg(m_config.listenAddress.toString())
                       .arg(m_config.port)
                       .arg(m_listener->errorString());
        return false;
    }
    m_sweeper = std::make_unique<UploadSweeper>(m_store, m_config.uploadTimeoutSeconds);
    return true;
}

void Server::serve(HttpConnection* c)
{
    c->setTrustedProxies(m_config.trustedProxies);
    // Direct: the handlers run on the connection's thread, not the server's.
    connect(c, &HttpConnection::headersReceived, this, &Server::headersReceived, Qt::DirectConnection);
    connect(c, &HttpConnection::requestReceived, this, &Server::requestReceived, Qt::DirectConnection);
}

bool Server::databaseReachable(HttpConnection* c)
{
    if (Database::available())
        return true;
    c->respondError(503, 503,
                    QStringLiteral("The server can't reach its database at the moment; nothing was changed. "
                                   "Please try again shortly."),
                    {{"Retry-After", "5"}});
    // A PATCH whose body came while the database was there lets go of its upload.
    qDeleteAll(c->findChildren<UploadLock*>());
    return false;
}

void Server::headersReceived(HttpConnection* c)
{
    // An upload's body is only taken into a file that the database knows of.
    if (c->request().method == "PATCH" && !databaseReachable(c))
        return;
    const QStringList path = segmentsOf(c->request().path);
    m_transfers.headersReceived(c, path);
    m_admin.headersReceived(c, path);
}

void Server::requestReceived(HttpConnection* c)
{
    if (!databaseReachable(c) || m_web.handle(c))
        return;
    const QStringList path = segmentsOf(c->request().path);
    if (path == QStringList{QStringLiteral("events")} && c->request().method == "GET")
        return events(c);
    if (!m_api.handle(c, path) && !m_transfers.handle(c, path) && !m_admin.handle(c, path) && !m_avatars.handle(c, path)
        && !m_manifest.handle(c, path) && !m_market.handle(c, path))
        c->respondError(404, 404, QStringLiteral("There is nothing at this address."));
}

void Server::events(HttpConnection* c)
{
    QString userId;
    if (!RequestContext::authenticate(m_accounts, c, &userId))
        return;
    bool given = false;
    const qint64 last = c->request().header("last-event-id").toLongLong(&given);
    m_hub.attach(c, userId, Accounts::sessionIdOf(c->request().bearerToken()), given && last >= 0 ? last : -1);
}
