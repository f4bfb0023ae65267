#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

class HttpConnection;

// The event streams held by one connection thread. Told that events
// arrived, it reads them once for all its streams' users and writes each
// stream what belongs to it.
class EventStreams : public QObject
{
    Q_OBJECT

public:
    EventStreams();

    void attach(HttpConnection* connection, const QString& userId, qint64 lastEventId);
    void deliverAll();
    void keepAlive();

private:
    struct Stream
    {
        QPointer<HttpConnection> connection;
        QString userId;
        qint64 lastId;
    };

    QList<Stream> m_streams;
    // The thread's own database connection may come back later than the
    // hub's: delivery is tried again until it works.
    QTimer m_retry;
};
