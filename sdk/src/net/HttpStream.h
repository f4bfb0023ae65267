#pragma once

#include "sdk/net/RemoteEndpoint.h"
#include "service/VLRError.h"

#include <QByteArray>
#include <QHash>
#include <QJsonObject>
#include <QList>

#include <chrono>
#include <functional>
#include <memory>

class QSslSocket;

// One HTTP/1.1 exchange with the team server on a TLS socket of its own,
// driven with the socket's blocking calls on the worker thread that moves a
// file's bytes. A file's content goes through it without the copies and the
// thread hops of the network access manager: the body of a request is
// written from the caller's buffer, the body of an answer read into it.
// The connection serves this one exchange and closes with the object.
//
// Every wait gives up when shouldStop says so (checked every moment) or when
// no byte moved for the idle timeout; the exchange then ends as Stopped or
// Failed, and the socket is aborted.
class HttpStream
{
public:
    static constexpr auto stopPollInterval = std::chrono::milliseconds(20);
    static constexpr qint64 lowWater = 4 * 1024 * 1024;
    static constexpr qint64 readBufferSize = 8 * 1024 * 1024;
    static constexpr qsizetype maxHeadBytes = 64 * 1024;
    static constexpr qint64 maxSmallBody = 1024 * 1024;

    enum class State { Open, Stopped, Failed };

    HttpStream(const RemoteEndpoint& endpoint, std::function<bool()> shouldStop, int idleTimeoutMs);
    HttpStream(const HttpStream&) = delete;
    HttpStream& operator=(const HttpStream&) = delete;
    ~HttpStream();

    // Connects, shakes hands and sends the request's head with the token.
    // contentLength < 0 sends none.
    bool begin(const QByteArray& method, const QString& path, const QList<std::pair<QByteArray, QByteArray>>& headers,
               qint64 contentLength);
    // Hands a piece of the body to the socket, waiting while much is still
    // unsent. False when the exchange ended, or when the server answered
    // early (answered() then says so): the rest of the body is not wanted.
    bool write(const char* data, qint64 size);
    bool answered() const;

    // Reads the answer's status line and headers.
    bool readHead();
    int status() const { return m_status; }
    // A header of the answer by its name in lower case.
    QByteArray header(const QByteArray& lowerName) const { return m_headers.value(lowerName); }
    qint64 contentLength() const { return m_contentLength; }
    // Up to size bytes of the answer's body: 0 at its end, -1 when the
    // exchange ended before it.
    qint64 read(char* into, qint64 size);
    // The rest of a small body as a JSON object (empty when it is none).
    QJsonObject json();

    State state() const { return m_state; }
    // What went wrong, for the user: the server's own error when it sent
    // one, else the connection's reason.
    vlr::Error failure();

private:
    bool waitFor(const std::function<bool()>& done, bool reading);
    void end(State state, const QString& reason);

    RemoteEndpoint m_endpoint;
    std::function<bool()> m_shouldStop;
    int m_idleTimeoutMs;
    std::unique_ptr<QSslSocket> m_socket;
    State m_state = State::Open;
    QString m_reason;
    int m_status = 0;
    QHash<QByteArray, QByteArray> m_headers;
    qint64 m_contentLength = -1;
    qint64 m_bodyRead = 0;
    QByteArray m_pending;
};
