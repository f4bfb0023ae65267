#pragma once

#include "sdk/net/RemoteEndpoint.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <functional>

class QFile;

// One request to the team server from a worker thread, waited for there
// with an event loop of its own: the thread has no other events to serve.
class ServerCall
{
public:
    struct Answer
    {
        // 0 when no answer came; failure then says why.
        int status = 0;
        QByteArray body;
        QString failure;

        QJsonObject json() const;
        // The server's own message for a failure, or the transport's.
        QString message() const;
    };

    static constexpr int timeoutMs = 30000;

    explicit ServerCall(const RemoteEndpoint& endpoint);

    Answer get(const QString& path) const;
    Answer send(const QByteArray& method, const QString& path, const QJsonObject& body) const;
    // A download that appends to the open file from the given offset
    // (asking for that range), handing each piece to received; it stops
    // when shouldStop turns true. On a 200 instead of a 206 the file is
    // emptied first and offset becomes 0.
    Answer download(const QString& path, QFile* file, qint64* offset, const std::function<bool()>& shouldStop,
                    const std::function<void(const QByteArray& piece)>& received) const;

private:
    RemoteEndpoint m_endpoint;
};
