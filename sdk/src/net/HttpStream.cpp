#include "sdk/net/HttpStream.h"

#include "sdk/base/ServiceError.h"
#include "sdk/net/RemoteCall.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QSslSocket>

HttpStream::HttpStream(const RemoteEndpoint& endpoint, std::function<bool()> shouldStop, int idleTimeoutMs)
    : m_endpoint(endpoint)
    , m_shouldStop(std::move(shouldStop))
    , m_idleTimeoutMs(idleTimeoutMs)
    , m_socket(std::make_unique<QSslSocket>())
{ }

HttpStream::~HttpStream()
{
    m_socket->abort();
}

void HttpStream::end(State state, const QString& reason)
{
    if (m_state != State::Open)
        return;
    m_state = state;
    m_reason = reason;
    m_socket->abort();
}

bool HttpStream::waitFor(const std::function<bool()>& done, bool reading)
{
    const int poll = int(stopPollInterval.count());
    QElapsedTimer idle;
    idle.start();
    while (m_state == State::Open && !done()) {
        if (m_shouldStop()) {
            end(State::Stopped, QString());
            break;
        }
        bool moved = false;
        const QAbstractSocket::SocketState state = m_socket->state();
        if (state == QAbstractSocket::HostLookupState || state == QAbstractSocket::ConnectingState)
            moved = m_socket->waitForConnected(poll);
        else if (state == QAbstractSocket::ConnectedState && !m_socket->isEncrypted())
            moved = m_socket->waitForEncrypted(poll);
        else if (reading)
            moved = m_socket->waitForReadyRead(poll);
        else
            moved = m_socket->waitForBytesWritten(poll);
        if (moved) {
            idle.restart();
            continue;
        }
        if (done())
            break;
        if (m_socket->state() == QAbstractSocket::UnconnectedState) {
            // Whatever arrived before the connection went is still readable.
            if (reading && m_socket->bytesAvailable() > 0)
                continue;
            end(State::Failed, m_socket->errorString());
        } else if (idle.hasExpired(m_idleTimeoutMs)) {
            end(State::Failed, QStringLiteral("The Veluria server stopped answering."));
        }
    }
    return m_state == State::Open;
}

bool HttpStream::begin(const QByteArray& method, const QString& path,
                       const QList<std::pair<QByteArray, QByteArray>>& headers, qint64 contentLength)
{
    const QUrl url = m_endpoint.apiUrl(path);
    m_socket->setSslConfiguration(m_endpoint.sslConfiguration());
    m_socket->setReadBufferSize(readBufferSize);
    m_socket->connectToHostEncrypted(url.host(), quint16(url.port(443)));
    if (!waitFor([&] { return m_socket->isEncrypted(); }, false))
        return false;

    QByteArray head = method + ' ' + url.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority)
        + " HTTP/1.1\r\nHost: " + url.authority().toUtf8() + "\r\nConnection: close\r\n";
    if (!m_endpoint.token.isEmpty())
        head += "Authorization: Bearer " + m_endpoint.token + "\r\n";
    if (contentLength >= 0)
        head += "Content-Length: " + QByteArray::number(contentLength) + "\r\n";
    for (const auto& [name, value] : headers)
        head += name + ": " + value + "\r\n";
    head += "\r\n";
    return write(head.constData(), head.size());
}

bool HttpStream::answered() const
{
    return !m_pending.isEmpty() || m_socket->bytesAvailable() > 0;
}

bool HttpStream::write(const char* data, qint64 size)
{
    if (m_state != State::Open || answered())
        return false;
    if (m_socket->write(data, size) != size) {
        end(State::Failed, m_socket->errorString());
        return false;
    }
    return waitFor([&] { return m_socket->bytesToWrite() < lowWater || answered(); }, false) && !answered();
}

bool HttpStream::readHead()
{
    // The end of the body is on its way before the answer is waited for;
    // a server that answered early may have closed without reading it.
    if (!answered())
        waitFor([&] { return m_socket->bytesToWrite() == 0 || answered(); }, false);
    qsizetype end = -1;
    const bool complete = waitFor(
        [&] {
            m_pending += m_socket->readAll();
            end = m_pending.indexOf("\r\n\r\n");
            return end >= 0 || m_pending.size() > maxHeadBytes;
        },
        true);
    if (!complete)
        return false;
    if (end < 0) {
        this->end(State::Failed, QStringLiteral("The Veluria server's answer has no end of its headers."));
        return false;
    }
    const QList<QByteArray> lines = m_pending.left(end).split('\n');
    m_pending.remove(0, end + 4);
    const QList<QByteArray> start = lines.value(0).trimmed().split(' ');
    bool known = false;
    m_status = start.value(1).toInt(&known);
    if (!start.value(0).startsWith("HTTP/1.") || !known) {
        m_status = 0;
        this->end(State::Failed, QStringLiteral("The Veluria server's answer is not HTTP/1.1."));
        return false;
    }
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const qsizetype colon = lines[i].indexOf(':');
        if (colon > 0)
            m_headers.insert(lines[i].left(colon).trimmed().toLower(), lines[i].mid(colon + 1).trimmed());
    }
    bool given = false;
    m_contentLength = header("content-length").toLongLong(&given);
    if (!given)
        m_contentLength = -1;
    return true;
}

qint64 HttpStream::read(char* into, qint64 size)
{
    if (m_contentLength >= 0)
        size = std::min(size, m_contentLength - m_bodyRead);
    if (size <= 0)
        return 0;
    qint64 got = 0;
    if (!m_pending.isEmpty()) {
        got = std::min<qint64>(size, m_pending.size());
        std::memcpy(into, m_pending.constData(), size_t(got));
        m_pending.remove(0, qsizetype(got));
    } else {
        const bool closed = !waitFor(
            [&] { return m_socket->bytesAvailable() > 0 || m_socket->state() == QAbstractSocket::UnconnectedState; },
            true);
        if (closed)
            return -1;
        got = m_socket->read(into, size);
        // Without a length the body ends with the connection.
        if (got <= 0 && m_contentLength < 0 && m_socket->state() == QAbstractSocket::UnconnectedState)
            return 0;
        if (got <= 0) {
            end(State::Failed, m_socket->errorString());
            return -1;
        }
    }
    m_bodyRead += got;
    return got;
}

QJsonObject HttpStream::json()
{
    QByteArray body;
    char piece[16 * 1024];
    for (qint64 got; body.size() <= maxSmallBody && (got = read(piece, sizeof piece)) > 0;)
        body.append(piece, qsizetype(got));
    return QJsonDocument::fromJson(body).object();
}

vlr::Error HttpStream::failure()
{
    if (m_status == 0)
        return ServiceError::make(ServiceError::ServerUnreachable, m_reason);
    return RemoteCall::serverFailure(m_status, json());
}
