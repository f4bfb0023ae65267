#include "EventHub.h"

#include "Database.h"
#include "HttpConnection.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QVariant>

namespace {
// A comment line now and then lets proxies keep the stream and shows a
// dead peer to the socket.
constexpr int keepAliveMs = 15000;
} // namespace

EventHub::EventHub(QObject* parent)
    : QObject(parent)
{
    m_keepAlive.setInterval(keepAliveMs);
    connect(&m_keepAlive, &QTimer::timeout, this, [this] {
        for (const Stream& stream : std::as_const(m_streams))
            if (stream.connection)
                stream.connection->sendKeepAlive();
    });
}

bool EventHub::listen(QString* failure)
{
    QSqlDriver* driver = Database::connection().driver();
    if (!driver->subscribeToNotification(QString::fromLatin1(channel))) {
        *failure = QStringLiteral("The server can't listen for changes in the database.");
        return false;
    }
    connect(driver, &QSqlDriver::notification, this, &EventHub::deliverAll);
    m_keepAlive.start();
    return true;
}

bool EventHub::record(const QString& workspaceId, const QString& kind, const QJsonObject& data)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("WITH e AS (INSERT INTO events(workspace_id, kind, data) VALUES (?, ?, ?::jsonb) "
                                 "RETURNING id) SELECT pg_notify('%1', id::text) FROM e")
                      .arg(QLatin1String(channel)));
    query.addBindValue(workspaceId);
    query.addBindValue(kind);
    query.addBindValue(QString::fromUtf8(QJsonDocument(data).toJson(QJsonDocument::Compact)));
    return query.exec();
}

bool EventHub::recordForUsers(const QString& usersQuery, const QVariantList& values, const QString& kind,
                              const QJsonObject& data)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("WITH e AS (INSERT INTO events(user_id, kind, data) SELECT DISTINCT u, ?, ?::jsonb "
                                 "FROM (%1) AS concerned(u) RETURNING id) SELECT pg_notify('%2', max(id)::text) FROM e")
                      .arg(usersQuery, QLatin1String(channel)));
    query.addBindValue(kind);
    query.addBindValue(QString::fromUtf8(QJsonDocument(data).toJson(QJsonDocument::Compact)));
    for (const QVariant& value : values)
        query.addBindValue(value);
    return query.exec();
}

void EventHub::attach(HttpConnection* connection, const QString& userId, qint64 lastEventId)
{
    if (lastEventId < 0) {
        QSqlQuery newest(Database::connection());
        newest.exec(QStringLiteral("SELECT coalesce(max(id), 0) FROM events"));
        lastEventId = newest.next() ? newest.value(0).toLongLong() : 0;
    }
    connection->beginEventStream();
    m_streams.append({connection, userId, lastEventId});
    deliver(m_streams.last());
}

void EventHub::deliverAll()
{
    m_streams.removeIf([](const Stream& stream) { return stream.connection.isNull(); });
    for (Stream& stream : m_streams)
        deliver(stream);
}

void EventHub::deliver(Stream& stream)
{
    // Membership is read at each delivery: a member who was removed gets
    // nothing more from that workspace. Events of a user go to that user.
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT e.id, e.kind, e.workspace_id, e.data FROM events e WHERE e.id > ? AND "
                                 "(e.user_id = ? OR e.workspace_id IN (SELECT workspace_id FROM members WHERE "
                                 "user_id = ?)) ORDER BY e.id"));
    query.addBindValue(stream.lastId);
    query.addBindValue(stream.userId);
    query.addBindValue(stream.userId);
    if (!query.exec())
        return;
    while (query.next()) {
        QJsonObject data = QJsonDocument::fromJson(query.value(3).toString().toUtf8()).object();
        if (!query.value(2).isNull())
            data.insert(QStringLiteral("workspace"), query.value(2).toString());
        stream.lastId = query.value(0).toLongLong();
        stream.connection->sendEvent(stream.lastId, query.value(1).toString().toUtf8(),
                                     QJsonDocument(data).toJson(QJsonDocument::Compact));
    }
}
