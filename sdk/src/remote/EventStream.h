#pragma once

#include "sdk/net/RemoteEndpoint.h"

#include "service/VLRError.h"

#include <QByteArray>
#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

class QNetworkReply;

// A session's push stream from its server (server-sent events), held open
// on the GUI thread. While it stands the server is reachable; when it breaks
// (an error, or no data and no ping for SilenceLimitMs) it is down and tries
// again after 1, 2, 4 … at most 30 seconds, asking for what came after the
// last event it passed on, so that nothing is lost on the way. A server that
// no longer knows the token ends the stream for good.
class EventStream : public QObject
{
    Q_OBJECT

public:
    static constexpr int SilenceLimitMs = 30000;
    static constexpr int FirstRetryMs = 1000;
    static constexpr int LongestRetryMs = 30000;
    // A line longer than this is no event of ours: the stream is broken.
    static constexpr qsizetype MaximumLineBytes = 1024 * 1024;

    struct Event
    {
        qint64 id = -1;
        QByteArray kind;
        QJsonObject data;
    };
    struct Handlers
    {
        std::function<void(const Event& event)> event;
        // The stream went down, or stands again.
        std::function<void(bool up)> reachabilityChanged;
        // The server refused the token (expired or unknown): the stream ended.
        std::function<void(const vlr::Error& error)> refused;
    };

    // lastEventId < 0: only what comes from now on.
    EventStream(const RemoteEndpoint& endpoint, qint64 lastEventId, Handlers handlers);
    ~EventStream() override;

    void start();
    void stop();
    bool isUp() const { return m_up; }
    qint64 lastEventId() const { return m_lastEventId; }

private:
    void open();
    void received();
    void ended();
    void broke();
    void setUp(bool up);
    void takeLine(QByteArray line);
    void dispatch();
    void dropReply();

    RemoteEndpoint m_endpoint;
    qint64 m_lastEventId;
    Handlers m_handlers;
    QPointer<QNetworkReply> m_reply;
    QByteArray m_buffer;
    QByteArray m_kind;
    QByteArray m_data;
    qint64 m_pendingId = -1;
    QTimer m_silence;
    QTimer m_retry;
    int m_retryMs = FirstRetryMs;
    bool m_up = false;
    // Whether the handlers heard of the stream's state since it started.
    bool m_told = false;
    bool m_stopped = true;
};
