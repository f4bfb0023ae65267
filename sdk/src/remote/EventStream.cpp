#include "sdk/remote/EventStream.h"

#include "sdk/remote/RemoteApi.h"
#include "sdk/remote/RemoteError.h"
#include "sdk/remote/RemoteLog.h"
#include "sdk/remote/RemoteReachabilityManager.h"

#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>

EventStream::EventStream(const RemoteEndpoint& endpoint, qint64 lastEventId, Handlers handlers)
    : m_endpoint(endpoint)
    , m_lastEventId(lastEventId)
    , m_handlers(std::move(handlers))
{
    m_silence.setSingleShot(true);
    m_silence.setInterval(SilenceLimitMs);
    connect(&m_silence, &QTimer::timeout, this, [this] {
        qCInfo(lcRemote, "Push stream silent for %d s", SilenceLimitMs / 1000);
        broke();
    });
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &EventStream::open);
}

EventStream::~EventStream()
{
    stop();
}

void EventStream::start()
{
    if (!m_stopped)
        return;
    m_stopped = false;
    open();
}

void EventStream::stop()
{
    m_stopped = true;
    m_retry.stop();
    m_silence.stop();
    dropReply();
    RemoteReachabilityManager::setStreamDown(this, false);
    m_up = false;
    m_told = false;
}

void EventStream::dropReply()
{
    if (!m_reply)
        return;
    QNetworkReply* reply = m_reply;
    m_reply = nullptr;
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

void EventStream::open()
{
    if (m_stopped)
        return;
    dropReply();
    m_buffer.clear();
    m_kind.clear();
    m_data.clear();
    m_pendingId = -1;
    QNetworkRequest request = m_endpoint.request(QStringLiteral("events"));
    request.setRawHeader("Accept", "text/event-stream");
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    if (m_lastEventId >= 0)
        request.setRawHeader("Last-Event-ID", QByteArray::number(m_lastEventId));
    m_reply = RemoteApi::network(m_endpoint)->get(request);
    RemoteApi::watchCertificate(m_reply);
    connect(m_reply, &QNetworkReply::readyRead, this, &EventStream::received);
    connect(m_reply, &QNetworkReply::finished, this, &EventStream::ended);
    m_silence.start();
}

void EventStream::received()
{
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status != 200)
        return; // an error's body, read when the reply ends
    m_silence.start();
    if (!m_up) {
        m_retryMs = FirstRetryMs;
        setUp(true);
    }
    m_buffer += m_reply->readAll();
    qsizetype start = 0;
    for (qsizetype end = m_buffer.indexOf('\n'); end >= 0; end = m_buffer.indexOf('\n', start)) {
        takeLine(m_buffer.sliced(start, end - start));
        start = end + 1;
        if (!m_reply)
            return; // a handler stopped the stream
    }
    m_buffer.remove(0, start);
    if (m_buffer.size() > MaximumLineBytes) {
        qCWarning(lcRemote, "Push stream sent a line of more than %lld bytes", qlonglong(MaximumLineBytes));
        broke();
    }
}

void EventStream::takeLine(QByteArray line)
{
    if (line.endsWith('\r'))
        line.chop(1);
    if (line.isEmpty())
        return dispatch();
    if (line.startsWith(':'))
        return; // the server's "connected" and its pings
    const qsizetype colon = line.indexOf(':');
    const QByteArray field = colon < 0 ? line : line.left(colon);
    QByteArray value = colon < 0 ? QByteArray() : line.mid(colon + 1);
    if (value.startsWith(' '))
        value.remove(0, 1);
    if (field == "id") {
        bool ok = false;
        const qint64 id = value.toLongLong(&ok);
        m_pendingId = ok ? id : -1;
    } else if (field == "event") {
        m_kind = value;
    } else if (field == "data") {
        if (!m_data.isEmpty())
            m_data += '\n';
        m_data += value;
    }
}

void EventStream::dispatch()
{
    Event event;
    event.id = m_pendingId;
    event.kind = m_kind.isEmpty() ? QByteArrayLiteral("message") : m_kind;
    const QJsonDocument document = QJsonDocument::fromJson(m_data);
    const bool hadData = !m_data.isEmpty();
    m_kind.clear();
    m_data.clear();
    m_pendingId = -1;
    if (!hadData)
        return;
    if (event.id >= 0) {
        // What a retry would bring again is never passed on twice.
        if (event.id <= m_lastEventId)
            return;
        m_lastEventId = event.id;
    }
    if (!document.isObject()) {
        qCWarning(lcRemote, "Push event %lld is not a JSON object; skipped", qlonglong(event.id));
        return;
    }
    event.data = document.object();
    if (m_handlers.event)
        m_handlers.event(event);
}

void EventStream::ended()
{
    QNetworkReply* reply = m_reply;
    if (!reply)
        return;
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status == 401) {
        const vlr::OptionalError error =
            RemoteError::fromReply(reply, reply->readAll(), RemoteApi::certificateRefused(reply));
        stop();
        if (error && m_handlers.refused)
            m_handlers.refused(*error);
        return;
    }
    if (RemoteApi::certificateRefused(reply))
        qCWarning(lcRemote, "Push stream: the server's certificate is not trusted");
    else
        qCInfo(lcRemote, "Push stream ended: %s (status %d)", qUtf8Printable(reply->errorString()), status);
    broke();
}

void EventStream::broke()
{
    dropReply();
    m_silence.stop();
    if (m_stopped)
        return;
    setUp(false);
    m_retry.start(m_retryMs);
    m_retryMs = std::min(m_retryMs * 2, LongestRetryMs);
}

void EventStream::setUp(bool up)
{
    RemoteReachabilityManager::setStreamDown(this, !up);
    if (m_told && up == m_up)
        return;
    m_told = true;
    m_up = up;
    if (m_handlers.reachabilityChanged)
        m_handlers.reachabilityChanged(up);
}
