#include "Server.h"

#include "Database.h"
#include "HttpConnection.h"
#include "RequestContext.h"

#include <QFile>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
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
    , m_market(m_accounts, m_store)
{ }

Server::~Server() = default;

bool Server::start(QString* failure)
{
    if (!m_store.prepare(failure) || !m_hub.listen(failure))
        return false;
    if (m_config.tls) {
        QSslConfiguration tls;
        if (!loadTls(m_config, &tls, failure))
            return false;
        auto listener = std::make_unique<QSslServer>();
        listener->setSslConfiguration(tls);
        m_listener = std::move(listener);
    } else {
        m_listener = std::make_unique<QTcpServer>();
    }
    connect(m_listener.get(), &QTcpServer::pendingConnectionAvailable, this, [this] { take(m_listener.get()); });
    if (!m_listener->listen(m_config.listenAddress, m_config.port)) {
        *failure = QStringLiteral("The server can't listen on %1 port %2: %3")
                       .arg(m_config.listenAddress.toString())
                       .arg(m_config.port)
                       .arg(m_listener->errorString());
        return false;
    }
    return true;
}

void Server::take(QTcpServer* listener)
{
    while (QTcpSocket* socket = listener->nextPendingConnection()) {
        auto* connection = new HttpConnection(socket, this);
        connect(connection, &HttpConnection::headersReceived, this, &Server::headersReceived);
        connect(connection, &HttpConnection::requestReceived, this, &Server::requestReceived);
    }
}

void Server::headersReceived(HttpConnection* c)
{
    m_transfers.headersReceived(c, segmentsOf(c->request().path));
}

void Server::requestReceived(HttpConnection* c)
{
    const QStringList path = segmentsOf(c->request().path);
    if (path == QStringList{QStringLiteral("events")} && c->request().method == "GET")
        return events(c);
    if (!m_api.handle(c, path) && !m_transfers.handle(c, path) && !m_market.handle(c, path))
        c->respondError(404, 404, QStringLiteral("There is nothing at this address."));
}

void Server::events(HttpConnection* c)
{
    QString userId;
    if (!RequestContext::authenticate(m_accounts, c, &userId))
        return;
    bool given = false;
    const qint64 last = c->request().header("last-event-id").toLongLong(&given);
    m_hub.attach(c, userId, given && last >= 0 ? last : -1);
}
