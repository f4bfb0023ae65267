#pragma once

#include "HttpRequest.h"

#include <QFile>
#include <QHostAddress>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>

class QTcpSocket;

// HTTP/1.1 over one socket (TLS or not), one request at a time, kept alive.
// A request's body is either buffered (small JSON, with a cap) or written
// as it arrives into a sink that the handler gives (uploads), so that bytes
// received before a cut-off are kept. A response is a whole body, a file
// sent in pieces as the socket drains, or an open event stream.
class HttpConnection : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 maxBufferedBody = 1 << 20;
    // A peer that sends and takes nothing this long is let go; an event
    // stream's pings keep a live one, and a dead one fills its buffer.
    static constexpr int idleTimeoutMs = 120 * 1000;
    // A request's headers (and before the first, the TLS handshake) must be
    // complete this soon: a peer trickling bytes is not kept for ever.
    static constexpr int headersTimeoutMs = 30 * 1000;
    // An event stream whose peer takes nothing while this much waits for it
    // is let go, rather than growing in the server's memory.
    static constexpr qint64 maxStreamBacklog = 1 << 20;

    explicit HttpConnection(QTcpSocket* socket, QObject* parent = nullptr);

    const HttpRequest& request() const { return m_request; }
    // Who is asking: the peer, or when the peer is one of the trusted
    // proxies (a load balancer), the nearest address in X-Forwarded-For
    // that is not one of them.
    QString clientAddress() const;
    using Subnet = std::pair<QHostAddress, int>;
    void setTrustedProxies(const QList<Subnet>& proxies) { m_trustedProxies = proxies; }

    // Called from headersReceived: the body goes into this file, not memory.
    void streamBodyInto(QFile* sink);
    qint64 bodyBytesReceived() const { return m_bodyReceived; }

    void respond(int status, const QByteArray& body, const QList<std::pair<QByteArray, QByteArray>>& headers = {},
                 const QByteArray& contentType = "application/json");
    void respondJson(int status, const QJsonObject& object);
    void respondError(int status, int code, const QString& message,
                      const QList<std::pair<QByteArray, QByteArray>>& headers = {});
    // Without a type the bytes go as application/octet-stream.
    void respondFile(int status, std::unique_ptr<QFile> file, qint64 offset, qint64 length,
                     const QList<std::pair<QByteArray, QByteArray>>& headers, const QByteArray& contentType = {});
    // Starts a text/event-stream; the connection then only carries events.
    void beginEventStream();
    void sendEvent(qint64 id, const QByteArray& kind, const QByteArray& data);
    void sendKeepAlive();
    // Ends the stream after what was written.
    void endEventStream();
    bool isEventStream() const { return m_eventStream; }

signals:
    void headersReceived(HttpConnection* connection);
    void requestReceived(HttpConnection* connection);
    void closed(HttpConnection* connection);

private:
    void readMore();
    bool parseHeaders(qsizetype end);
    void takeBody();
    void writeBufferedBody();
    void writeBehind(bool all);
    void sendHead(int status, qint64 length, const QList<std::pair<QByteArray, QByteArray>>& headers,
                  const QByteArray& contentType);
    void pumpFile();
    void finishResponse();
    void fail(int status, const QString& message);
    // True (and the peer let go) when a stream's peer stopped taking bytes.
    bool backlogged();

    QTcpSocket* m_socket;
    QByteArray m_buffer;
    HttpRequest m_request;
    enum class State { Headers, Body, Handling, Closing } m_state = State::Headers;
    QFile* m_sink = nullptr;
    qint64 m_bodyReceived = 0;
    // Where the bytes not yet handed to the disk begin in the sink.
    qint64 m_unsynced = 0;
    bool m_writeQueued = false;
    bool m_writeNow = false;
    std::unique_ptr<QFile> m_source;
    qint64 m_sourceLeft = 0;
    QByteArray m_chunk;
    QList<Subnet> m_trustedProxies;
    bool m_eventStream = false;
    bool m_keepAlive = true;
    // Answered before its body came: the rest of the body is read and dropped.
    bool m_discardBody = false;
    QTimer m_idle;
    QTimer m_headersDeadline;
};
