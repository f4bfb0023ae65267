#include "EventStreams.h"

#include "Accounts.h"
#include "Database.h"
#include "HttpConnection.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QSqlQuery>
#include <QVariant>

namespace {
constexpr int retryMs = 1000;
} // namespace

EventStreams::EventStreams()
{
    m_retry.setSingleShot(true);
    m_retry.setInterval(retryMs);
    connect(&m_retry, &QTimer::timeout, this, &EventStreams::deliverAll);
}

void EventStreams::attach(HttpConnection* connection, const QString& userId, const QString& sessionId,
                          qint64 lastEventId)
{
    if (lastEventId < 0) {
        QSqlQuery newest(Database::connection());
        newest.exec(QStringLiteral("SELECT coalesce(max(id), 0) FROM events"));
        lastEventId = newest.next() ? newest.value(0).toLongLong() : 0;
    }
    connection->beginEventStream();
    m_streams.append({connection, userId, sessionId, lastEventId});
    deliverAll();
}

void EventStreams::keepAlive()
{
    if (const auto sessions = standing())
        closeEnded(*sessions);
    for (const Stream& stream : std::as_const(m_streams))
        if (stream.connection)
            stream.connection->sendKeepAlive();
}

std::optional<QSet<QString>> EventStreams::standing() const
{
    QSet<QString> sessions;
    for (const Stream& stream : m_streams)
        sessions.insert(stream.sessionId);
    if (sessions.isEmpty())
        return sessions;
    return Database::available() ? Accounts::standing(sessions) : std::nullopt;
}

void EventStreams::closeEnded(const QSet<QString>& standing)
{
    m_streams.removeIf([&](const Stream& stream) {
        if (!stream.connection || standing.contains(stream.sessionId))
            return !stream.connection;
        stream.connection->endEventStream();
        return true;
    });
}

void EventStreams::deliverAll()
{
    m_streams.removeIf([](const Stream& stream) { return stream.connection.isNull(); });
    if (m_streams.isEmpty())
        return;
    QSet<QString> users;
    qint64 from = m_streams.first().lastId;
    for (const Stream& stream : std::as_const(m_streams)) {
        users.insert(stream.userId);
        from = qMin(from, stream.lastId);
    }
    const auto sessions = standing();
    if (!sessions) {
        m_retry.start();
        return;
    }
    // One query for the whole thread. Membership is read at each delivery:
    // a member who was removed gets nothing more from that workspace, and
    // one who joined nothing from before.
    QSqlQuery query(Database::connection());
    // Events of a workspace go to its members, events of one person to them.
    query.prepare(QStringLiteral(
        "SELECT e.id, e.kind, e.workspace_id, e.data, m.user_id FROM events e JOIN members m "
        "ON m.workspace_id = e.workspace_id WHERE m.user_id = ANY(?::uuid[]) AND e.id > ? AND e.id > m.joined_after "
        "UNION ALL SELECT e.id, e.kind, e.workspace_id, e.data, e.user_id FROM events e "
        "WHERE e.user_id = ANY(?::uuid[]) AND e.id > ? ORDER BY 1"));
    const QString audience =
        QLatin1Char('{') + QStringList(users.begin(), users.end()).join(QLatin1Char(',')) + QLatin1Char('}');
    query.addBindValue(audience);
    query.addBindValue(from);
    query.addBindValue(audience);
    query.addBindValue(from);
    if (!query.exec()) {
        m_retry.start();
        return;
    }
    while (query.next()) {
        const qint64 id = query.value(0).toLongLong();
        const QString userId = query.value(4).toString();
        QByteArray data;
        const QString kind = query.value(1).toString();
        for (Stream& stream : m_streams) {
            if (stream.userId != userId || stream.lastId >= id || !stream.connection)
                continue;
            // An ended session hears why it ended, and nothing else.
            if (!sessions->contains(stream.sessionId) && kind != QLatin1String("password"))
                continue;
            if (data.isEmpty()) {
                QJsonObject object = QJsonDocument::fromJson(query.value(3).toString().toUtf8()).object();
                if (!query.value(2).isNull())
                    object.insert(QStringLiteral("workspace"), query.value(2).toString());
                data = QJsonDocument(object).toJson(QJsonDocument::Compact);
            }
            stream.lastId = id;
            stream.connection->sendEvent(id, kind.toUtf8(), data);
        }
    }
    closeEnded(*sessions);
}
