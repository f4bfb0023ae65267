#pragma once

#include <QHash>
#include <QMutex>
#include <QObject>
#include <QTimer>

class EventStreams;
class HttpConnection;
class QJsonObject;
class QThread;

// Push to signed-in clients as server-sent events. Every change worth
// pushing is a row of the events table, announced with NOTIFY; every
// server process LISTENs, so a change made through one process reaches the
// streams held by all. A stream sends the rows after the last one it sent
// that belong to its user's workspaces, so a client that reconnects with
// Last-Event-ID gets what it missed, each event once.
//
// The hub LISTENs on its own connection on the thread it lives on and tells
// every connection thread's EventStreams by queued signals; each thread
// reads the new rows itself and writes to the sockets it owns. When
// PostgreSQL goes away the hub listens again as soon as it is back, and the
// streams then catch up with whatever was published meanwhile.
class EventHub : public QObject
{
    Q_OBJECT

public:
    static constexpr const char* channel = "veluria_events";

    explicit EventHub(QObject* parent = nullptr);
    ~EventHub() override;
    bool listen(QString* failure);

    // Records the event in the current transaction; it goes out at commit.
    static bool record(const QString& workspaceId, const QString& kind, const QJsonObject& data);
    // The same for an event that only the user's own streams receive.
    static bool recordForUser(const QString& userId, const QString& kind, const QJsonObject& data);

    // On the connection's own thread. The stream lasts as long as the
    // session it was opened with.
    void attach(HttpConnection* connection, const QString& userId, const QString& sessionId, qint64 lastEventId);

signals:
    void eventsArrived();
    void keepAlive();

private:
    bool subscribe();
    void watchListener();
    EventStreams* streamsOfThisThread();

    QTimer m_keepAlive;
    QTimer m_watch;
    bool m_listening = false;
    QMutex m_lock;
    QHash<QThread*, EventStreams*> m_streams;
};
