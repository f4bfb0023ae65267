#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>

#include <optional>

class HttpConnection;

// The event streams held by one connection thread. Told that events
// arrived, it reads them once for all its streams' users and writes each
// stream what belongs to it. A stream whose session ended (signed out,
// expired, or ended by a new password) is closed at the next delivery or
// keep-alive, having got nothing more than the news of a new password.
class EventStreams : public QObject
{
    Q_OBJECT

public:
    EventStreams();

    void attach(HttpConnection* connection, const QString& userId, const QString& sessionId, qint64 lastEventId);
    void deliverAll();
    void keepAlive();

private:
    struct Stream
    {
        QPointer<HttpConnection> connection;
        QString userId;
        QString sessionId;
        qint64 lastId;
    };

    // The sessions of the streams that still stand; nothing when the
    // database can't tell.
    std::optional<QSet<QString>> standing() const;
    void closeEnded(const QSet<QString>& standing);

    QList<Stream> m_streams;
    // The thread's own database connection may come back later than the
    // hub's: delivery is tried again until it works.
    QTimer m_retry;
};
