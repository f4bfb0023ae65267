#include "HttpConnection.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSslSocket>
#include <QUrl>

#include <fcntl.h>

namespace {
constexpr qsizetype maxHeaderBytes = 16 * 1024;
constexpr qint64 fileChunk = 256 * 1024;
constexpr qint64 lowWater = 1024 * 1024;
constexpr qint64 writeBehindBytes = 8 * 1024 * 1024;
constexpr qsizetype sinkBatchBytes = 1024 * 1024;

QByteArray reasonOf(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 201:
        return "Created";
    case 204:
        return "No Content";
    case 206:
        return "Partial Content";
    case 400:
        return "Bad Request";
    case 401:
        return "Unauthorized";
    case 403:
        return "Forbidden";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 409:
        return "Conflict";
    case 413:
        return "Content Too Large";
    case 416:
        return "Range Not Satisfiable";
    case 422:
        return "Unprocessable Content";
    case 429:
        return "Too Many Requests";
    case 431:
        return "Request Header Fields Too Large";
    case 503:
        return "Service Unavailable";
    case 507:
        return "Insufficient Storage";
    default:
        return status >= 500 ? "Internal Server Error" : "Error";
    }
}
} // namespace

HttpConnection::HttpConnection(QTcpSocket* socket, QObject* parent)
    : QObject(parent)
    , m_socket(socket)
{
    socket->setParent(this);
    m_idle.setSingleShot(true);
    m_idle.setInterval(idleTimeoutMs);
    connect(&m_idle, &QTimer::timeout, socket, &QTcpSocket::abort);
    m_idle.start();
    connect(socket, &QTcpSocket::bytesWritten, &m_idle, qOverload<>(&QTimer::start));
    m_headersDeadline.setSingleShot(true);
    m_headersDeadline.setInterval(headersTimeoutMs);
    connect(&m_headersDeadline, &QTimer::timeout, socket, &QTcpSocket::abort);
    m_headersDeadline.start();
    connect(socket, &QTcpSocket::readyRead, this, &HttpConnection::readMore);
    connect(socket, &QTcpSocket::bytesWritten, this, &HttpConnection::pumpFile);
    connect(socket, &QTcpSocket::disconnected, this, [this] {
        // What came with the last packets still counts for an upload.
        if (m_state == State::Body && m_sink)
            writeBufferedBody();
        m_sink = nullptr;
        emit closed(this);
        deleteLater();
    });
}

void HttpConnection::readMore()
{
    m_idle.start();
    // Straight into the buffer's end: no array of its own for each TLS record.
    if (const qint64 available = m_socket->bytesAvailable(); available > 0) {
        const qsizetype old = m_buffer.size();
        m_buffer.resize(old + available);
        m_buffer.resize(old + qMax<qint64>(0, m_socket->read(m_buffer.data() + old, available)));
    }
    // While an answer is awaited, a peer may send the next request, but not
    // without end.
    if (m_state != State::Headers && m_state != State::Body && m_buffer.size() > maxHeaderBytes + maxBufferedBody) {
        m_socket->abort();
        return;
    }
    while (true) {
        if (m_state == State::Headers) {
            const qsizetype end = m_buffer.indexOf("\r\n\r\n");
            if (end < 0) {
                if (m_buffer.size() > maxHeaderBytes)
                    fail(431, QStringLiteral("The request's headers are too long."));
                else if (!m_buffer.isEmpty() && !m_headersDeadline.isActive())
                    m_headersDeadline.start();
                return;
            }
            m_headersDeadline.stop();
            if (!parseHeaders(end))
                return;
            m_state = State::Body;
            m_bodyReceived = 0;
            emit headersReceived(this);
            if (m_state != State::Body)
                return; // the connection is closing
            if (!m_sink && !m_discardBody && m_request.contentLength > maxBufferedBody) {
                fail(413, QStringLiteral("The request's body is too large."));
                return;
            }
            // A client that waits to hear whether to send the body (curl does
            // for large ones) hears it now, not after a pause of its own.
            if (!m_discardBody && m_request.contentLength > 0 && m_request.header("expect").toLower() == "100-continue")
                m_socket->write("HTTP/1.1 100 Continue\r\n\r\n");
        }
        if (m_state != State::Body)
            return;
        // TLS hands the body over in small records: they are gathered and
        // written to the sink in large pieces, once the socket has no more
        // for now or enough has come.
        if (m_sink && !m_writeNow && m_buffer.size() < sinkBatchBytes
            && m_bodyReceived + m_buffer.size() < m_request.contentLength) {
            if (!m_writeQueued) {
                m_writeQueued = true;
                QMetaObject::invokeMethod(this, &HttpConnection::writeBufferedBody, Qt::QueuedConnection);
            }
            return;
        }
        takeBody();
        if (m_state != State::Body || m_bodyReceived < m_request.contentLength)
            return;
        m_state = State::Handling;
        if (m_sink) {
            m_sink->flush();
            writeBehind(true);
        }
        m_sink = nullptr;
        if (m_discardBody) {
            m_discardBody = false;
            m_state = State::Headers;
            continue;
        }
        emit requestReceived(this);
        if (m_state != State::Headers)
            return; // an answer still to come, or the connection is closing
    }
}

bool HttpConnection::parseHeaders(qsizetype end)
{
    const QList<QByteArray> lines = m_buffer.left(end).split('\n');
    m_buffer.remove(0, end + 4);
    m_request = HttpRequest();
    const QList<QByteArray> start = lines.value(0).trimmed().split(' ');
    if (start.size() != 3 || !start[2].startsWith("HTTP/1.")) {
        fail(400, QStringLiteral("This is not an HTTP/1.1 request."));
        return false;
    }
    m_request.method = start[0];
    const QUrl url(QString::fromLatin1(start[1]));
    m_request.path = url.path(QUrl::FullyDecoded);
    m_request.query = QUrlQuery(url);
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const qsizetype colon = lines[i].indexOf(':');
        if (colon <= 0)
            continue;
        m_request.headers.insert(lines[i].left(colon).trimmed().toLower(), lines[i].mid(colon + 1).trimmed());
    }
    if (m_request.headers.contains("transfer-encoding")) {
        fail(400, QStringLiteral("Chunked bodies are not accepted; send Content-Length."));
        return false;
    }
    bool ok = true;
    const QByteArray length = m_request.header("content-length");
    m_request.contentLength = length.isEmpty() ? 0 : length.toLongLong(&ok);
    if (!ok || m_request.contentLength < 0) {
        fail(400, QStringLiteral("Content-Length is not a number."));
        return false;
    }
    m_keepAlive = m_request.header("connection").toLower() != "close";
    return true;
}

void HttpConnection::takeBody()
{
    // Written straight from the receive buffer: a large upload is not copied twice.
    const qint64 piece = qMin<qint64>(m_request.contentLength - m_bodyReceived, m_buffer.size());
    if (m_sink) {
        if (m_sink->write(m_buffer.constData(), piece) != piece) {
            const bool full = m_sink->error() == QFileDevice::ResourceError;
            m_sink = nullptr;
            if (full)
                fail(507,
                     QStringLiteral("The server's store is full. The bytes received so far are kept; please "
                                    "try again later."));
            else
                fail(500, QStringLiteral("The server could not store the bytes."));
            return;
        }
        writeBehind(false);
    } else if (!m_discardBody) {
        m_request.body.append(m_buffer.constData(), qsizetype(piece));
    }
    m_buffer.remove(0, qsizetype(piece));
    m_bodyReceived += piece;
}

void HttpConnection::writeBufferedBody()
{
    m_writeQueued = false;
    m_writeNow = true;
    readMore();
    m_writeNow = false;
}

void HttpConnection::streamBodyInto(QFile* sink)
{
    m_sink = sink;
    m_unsynced = sink->pos();
}

void HttpConnection::writeBehind(bool all)
{
    // The disk starts writing what came while more is coming, so that the
    // fsync that makes an upload whole finds little left to do.
    const qint64 end = m_sink->pos();
    if (end - m_unsynced < writeBehindBytes && !all)
        return;
    ::sync_file_range(m_sink->handle(), m_unsynced, end - m_unsynced, SYNC_FILE_RANGE_WRITE);
    m_unsynced = end;
}

void HttpConnection::sendHead(int status, qint64 length, const QList<std::pair<QByteArray, QByteArray>>& headers,
                              const QByteArray& contentType)
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + ' ' + reasonOf(status) + "\r\n";
    if (!contentType.isEmpty())
        head += "Content-Type: " + contentType + "\r\n";
    if (length >= 0)
        head += "Content-Length: " + QByteArray::number(length) + "\r\n";
    for (const auto& [name, value] : headers)
        head += name + ": " + value + "\r\n";
    if (!m_keepAlive)
        head += "Connection: close\r\n";
    head += "\r\n";
    m_socket->write(head);
}

void HttpConnection::respond(int status, const QByteArray& body,
                             const QList<std::pair<QByteArray, QByteArray>>& headers, const QByteArray& contentType)
{
    sendHead(status, body.size(), headers, body.isEmpty() ? QByteArray() : contentType);
    m_socket->write(body);
    finishResponse();
}

void HttpConnection::respondJson(int status, const QJsonObject& object)
{
    respond(status, QJsonDocument(object).toJson(QJsonDocument::Compact));
}

void HttpConnection::respondError(int status, int code, const QString& message,
                                  const QList<std::pair<QByteArray, QByteArray>>& headers)
{
    const QJsonObject error{{QStringLiteral("domain"), QStringLiteral("VLRWebErrorDomain")},
                            {QStringLiteral("code"), code},
                            {QStringLiteral("message"), message}};
    respond(status, QJsonDocument(QJsonObject{{QStringLiteral("error"), error}}).toJson(QJsonDocument::Compact),
            headers);
}

QString HttpConnection::clientAddress() const
{
    const auto plain = [](const QHostAddress& address) {
        bool mapped = false;
        const quint32 v4 = address.toIPv4Address(&mapped);
        return mapped ? QHostAddress(v4) : address;
    };
    const auto trusted = [&](const QHostAddress& address) {
        return std::any_of(m_trustedProxies.begin(), m_trustedProxies.end(),
                           [&](const Subnet& subnet) { return address.isInSubnet(subnet); });
    };
    QHostAddress address = plain(m_socket->peerAddress());
    // Each proxy appends whom it heard from: read from the right, past the
    // trusted ones. What a client wrote itself further left is not believed.
    const QList<QByteArray> hops = m_request.header("x-forwarded-for").split(',');
    for (auto hop = hops.crbegin(); hop != hops.crend() && trusted(address); ++hop) {
        const QHostAddress forwarded(QString::fromLatin1(hop->trimmed()));
        if (forwarded.isNull())
            break;
        address = plain(forwarded);
    }
    return address.toString();
}

void HttpConnection::fail(int status, const QString& message)
{
    // The rest of what the peer sends can't be read as requests any more.
    m_keepAlive = false;
    m_state = State::Handling;
    respondError(status, status, message);
}

void HttpConnection::respondFile(int status, std::unique_ptr<QFile> file, qint64 offset, qint64 length,
                                 const QList<std::pair<QByteArray, QByteArray>>& headers, const QByteArray& contentType)
{
    if (!file->seek(offset)) {
        respondError(500, 500, QStringLiteral("The content can't be read."));
        return;
    }
    sendHead(status, length, headers,
             contentType.isEmpty() ? QByteArrayLiteral("application/octet-stream") : contentType);
    m_source = std::move(file);
    m_sourceLeft = length;
    pumpFile();
}

void HttpConnection::pumpFile()
{
    while (m_source && m_socket->bytesToWrite() < lowWater) {
        if (m_sourceLeft == 0) {
            m_source.reset();
            m_chunk = QByteArray();
            finishResponse();
            return;
        }
        // One buffer for the whole file: a fresh one per piece would be
        // mapped and faulted in anew each time.
        if (m_chunk.isEmpty())
            m_chunk.resize(fileChunk);
        const qint64 n = m_source->read(m_chunk.data(), qMin(fileChunk, m_sourceLeft));
        if (n <= 0) {
            // The content is shorter than its record: nothing honest can follow.
            m_source.reset();
            m_socket->abort();
            return;
        }
        m_sourceLeft -= n;
        m_socket->write(m_chunk.constData(), n);
    }
}

void HttpConnection::finishResponse()
{
    if (!m_keepAlive) {
        m_state = State::Closing;
        m_socket->disconnectFromHost();
        return;
    }
    if (m_state == State::Handling) {
        m_state = State::Headers;
        if (!m_buffer.isEmpty())
            QMetaObject::invokeMethod(this, &HttpConnection::readMore, Qt::QueuedConnection);
    } else if (m_state == State::Body) {
        m_sink = nullptr;
        m_discardBody = true;
    }
}

void HttpConnection::beginEventStream()
{
    m_eventStream = true;
    m_state = State::Closing;
    sendHead(200, -1, {{"Cache-Control", "no-store"}}, "text/event-stream");
    m_socket->write(": connected\n\n");
}

void HttpConnection::sendEvent(qint64 id, const QByteArray& kind, const QByteArray& data)
{
    if (backlogged())
        return;
    m_socket->write("id: " + QByteArray::number(id) + "\nevent: " + kind + "\ndata: " + data + "\n\n");
}

void HttpConnection::sendKeepAlive()
{
    if (backlogged())
        return;
    m_socket->write(": ping\n\n");
}

void HttpConnection::endEventStream()
{
    m_socket->disconnectFromHost();
}

bool HttpConnection::backlogged()
{
    qint64 waiting = m_socket->bytesToWrite();
    if (auto* tls = qobject_cast<QSslSocket*>(m_socket))
        waiting += tls->encryptedBytesToWrite();
    if (waiting <= maxStreamBacklog)
        return false;
    m_socket->abort();
    return true;
}
