#include "sdk/net/RemoteCall.h"

#include "sdk/base/ServiceError.h"

#include <QEventLoop>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QTimer>

void RemoteCall::Deleter::operator()(QNetworkReply* reply) const
{
    delete reply;
}

RemoteCall::RemoteCall(QNetworkReply* reply)
    : m_reply(reply)
{ }

RemoteCall::~RemoteCall() = default;

bool RemoteCall::wait(const std::function<bool()>& shouldStop)
{
    if (m_reply->isFinished())
        return true;
    QEventLoop loop;
    bool stopped = false;
    QTimer poll;
    poll.setInterval(stopPollInterval);
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (!shouldStop())
            return;
        stopped = true;
        m_reply->abort();
        loop.quit();
    });
    QObject::connect(m_reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    poll.start();
    loop.exec();
    return !stopped;
}

int RemoteCall::status() const
{
    return m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

QByteArray RemoteCall::header(const QByteArray& name) const
{
    return m_reply->rawHeader(name);
}

QJsonObject RemoteCall::json()
{
    if (!m_json)
        m_json = QJsonDocument::fromJson(m_reply->readAll()).object();
    return *m_json;
}

vlr::Error RemoteCall::failure()
{
    return failureOf(*m_reply, json());
}

vlr::Error RemoteCall::failureOf(const QNetworkReply& reply, const QJsonObject& body)
{
    // Errors below the proxy's are the connection's own, also when it broke
    // in the middle of an answer.
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QNetworkReply::NetworkError error = reply.error();
    if (status == 0 || (error != QNetworkReply::NoError && error < QNetworkReply::ProxyConnectionRefusedError))
        return ServiceError::make(ServiceError::ServerUnreachable, reply.errorString());
    const QJsonObject said = body.value(QStringLiteral("error")).toObject();
    const QString message = said.value(QStringLiteral("message")).toString();
    if (!message.isEmpty())
        return vlr::makeError(said.value(QStringLiteral("domain")).toString(vlr::VLRWebErrorDomain),
                              said.value(QStringLiteral("code")).toInteger(status), message);
    return vlr::makeError(vlr::VLRWebErrorDomain, status,
                          QStringLiteral("The Veluria server refused the transfer (HTTP status %1).").arg(status));
}
