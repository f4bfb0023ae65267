#include "EventHub.h"

#include "Database.h"
#include "EventStreams.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QThread>
#include <QVariant>

namespace {
// A comment line now and then lets proxies keep the stream and shows a
// dead peer to the socket.
constexpr int keepAliveMs = 15000;
// How soon a lost LISTEN connection is noticed and made again.
constexpr int watchMs = 500;
const QString listenPurpose = QStringLiteral("-listen");
} // namespace

EventHub::EventHub(QObject* parent)
    : QObject(parent)
{
    m_keepAlive.setInterval(keepAliveMs);
    connect(&m_keepAlive, &QTimer::timeout, this, &EventHub::keepAlive);
    m_watch.setInterval(watchMs);
    connect(&m_watch, &QTimer::timeout, this, &EventHub::watchListener);
}

EventHub::~EventHub()
{
    QMutexLocker locked(&m_lock);
    qDeleteAll(m_streams);
}

bool EventHub::listen(QString* failure)
{
    if (!subscribe()) {
        *failure = QStringLiteral("The server can't listen for changes in the database.");
        return false;
    }
    m_keepAlive.start();
    m_watch.start();
    return true;
}

bool EventHub::subscribe()
{
    QSqlDatabase db = Database::connection(listenPurpose);
    QSqlDriver* driver = db.driver();
    if (!db.isOpen() || !driver->subscribeToNotification(QString::fromLatin1(channel)))
        return false;
    connect(driver, &QSqlDriver::notification, this, &EventHub::eventsArrived, Qt::UniqueConnection);
    m_listening = true;
    return true;
}

void EventHub::watchListener()
{
    QSqlDatabase db = Database::connection(listenPurpose);
    if (m_listening && Database::stands(db))
        return;
    // A connection made anew (by this or by anybody asking for it) listens
    // to nothing until told again.
    m_listening = false;
    if (!Database::available(db) || !subscribe())
        return;
    // Whatever was published while nobody listened is in the table.
    emit eventsArrived();
}

namespace {
bool insertEvent(const char* audience, const QString& id, const QString& kind, const QJsonObject& data)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("WITH e AS (INSERT INTO events(%1, kind, data) VALUES (?, ?, ?::jsonb) "
                                 "RETURNING id) SELECT pg_notify('%2', id::text) FROM e")
                      .arg(QLatin1String(audience), QLatin1String(EventHub::channel)));
    query.addBindValue(id);
    query.addBindValue(kind);
    query.addBindValue(QString::fromUtf8(QJsonDocument(data).toJson(QJsonDocument::Compact)));
    return query.exec();
}
} // namespace

bool EventHub::record(const QString& workspaceId, const QString& kind, const QJsonObject& data)
{
    return insertEvent("workspace_id", workspaceId, kind, data);
}

bool EventHub::recordForUser(const QString& userId, const QString& kind, const QJsonObject& data)
{
    return insertEvent("user_id", userId, kind, data);
}

void EventHub::attach(HttpConnection* connection, const QString& userId, const QString& sessionId, qint64 lastEventId)
{
    streamsOfThisThread()->attach(connection, userId, sessionId, lastEventId);
}

EventStreams* EventHub::streamsOfThisThread()
{
    QThread* thread = QThread::currentThread();
    QMutexLocker locked(&m_lock);
    if (EventStreams* streams = m_streams.value(thread))
        return streams;
    auto* streams = new EventStreams;
    connect(this, &EventHub::eventsArrived, streams, &EventStreams::deliverAll);
    connect(this, &EventHub::keepAlive, streams, &EventStreams::keepAlive);
    if (thread != this->thread())
        connect(
            thread, &QThread::finished, this,
            [this, thread] {
                QMutexLocker locked(&m_lock);
                delete m_streams.take(thread);
            },
            Qt::DirectConnection);
    m_streams.insert(thread, streams);
    return streams;
}
