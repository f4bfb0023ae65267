#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVariantList>

class HttpConnection;
class QJsonObject;

// Push to signed-in clients as server-sent events. Every change worth
// pushing is a row of the events table, announced with NOTIFY; every
// server process LISTENs, so a change made through one process reaches the
// streams held by all. A stream sends the rows after the last one it sent
// that belong to its user's workspaces, so a client that reconnects with
// Last-Event-ID gets what it missed, each event once.
class EventHub : public QObject
{
    Q_OBJECT

public:
    static constexpr const char* channel = "veluria_events";

    explicit EventHub(QObject* parent = nullptr);
    bool listen(QString* failure);

    // Records the event in the current transaction; it goes out at commit.
    static bool record(const QString& workspaceId, const QString& kind, const QJsonObject& data);
    // The same for an event that concerns users rather than a workspace:
    // one event for each user that the query (with its bound values) selects.
    static bool recordForUsers(const QString& usersQuery, const QVariantList& values, const QString& kind,
                               const QJsonObject& data);

    void attach(HttpConnection* connection, const QString& userId, qint64 lastEventId);

private:
    struct Stream
    {
        QPointer<HttpConnection> connection;
        QString userId;
        qint64 lastId;
    };
    void deliverAll();
    void deliver(Stream& stream);

    QList<Stream> m_streams;
    QTimer m_keepAlive;
};
