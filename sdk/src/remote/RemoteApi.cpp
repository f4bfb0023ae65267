#include "sdk/remote/RemoteApi.h"

#include "sdk/remote/RemoteError.h"

#include <QCoreApplication>
#include <QHash>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>

namespace {

// An answer of the API is small; an image at most a few megabytes.
constexpr qint64 MaximumAnswerBytes = 16 * 1024 * 1024;

} // namespace

QNetworkAccessManager* RemoteApi::network(const RemoteEndpoint& endpoint)
{
    static QHash<QByteArray, QPointer<QNetworkAccessManager>> managers;
    QByteArray trust = endpoint.base.toEncoded();
    for (const QSslCertificate& certificate : endpoint.trusted)
        trust += ' ' + certificate.digest(QCryptographicHash::Sha256).toHex();
    QPointer<QNetworkAccessManager>& manager = managers[trust];
    if (!manager)
        manager = new QNetworkAccessManager(QCoreApplication::instance());
    return manager;
}

void RemoteApi::watchCertificate(QNetworkReply* reply)
{
    QObject::connect(reply, &QNetworkReply::sslErrors, reply, [reply](const QList<QSslError>& errors) {
        for (const QSslError& error : errors)
            if (error.error() != QSslError::NoError)
                reply->setProperty("certificateRefused", true);
    });
}

bool RemoteApi::certificateRefused(QNetworkReply* reply)
{
    return reply->property("certificateRefused").toBool() || reply->error() == QNetworkReply::SslHandshakeFailedError;
}

void RemoteApi::send(const RemoteEndpoint& endpoint, const QByteArray& method, const QString& path,
                     const std::optional<QJsonObject>& body, Handler handler)
{
    QNetworkRequest request = endpoint.request(path);
    request.setTransferTimeout(TimeoutMilliseconds);
    const QByteArray bytes = body ? QJsonDocument(*body).toJson(QJsonDocument::Compact) : QByteArray();
    QNetworkReply* reply = network(endpoint)->sendCustomRequest(request, method, bytes);
    watchCertificate(reply);
    capSize(reply);
    QObject::connect(reply, &QNetworkReply::finished, reply,
                     [reply, handler = std::move(handler)] { finish(reply, true, handler); });
}

void RemoteApi::fetch(const RemoteEndpoint& endpoint, const QString& path, Handler handler)
{
    QNetworkRequest request = endpoint.request(path);
    request.setTransferTimeout(TimeoutMilliseconds);
    QNetworkReply* reply = network(endpoint)->get(request);
    watchCertificate(reply);
    capSize(reply);
    QObject::connect(reply, &QNetworkReply::finished, reply,
                     [reply, handler = std::move(handler)] { finish(reply, false, handler); });
}

void RemoteApi::capSize(QNetworkReply* reply)
{
    // A server that sends more than any answer of ours can be is cut off
    // before it fills the memory.
    QObject::connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received, qint64 total) {
        if (received > MaximumAnswerBytes || total > MaximumAnswerBytes)
            reply->abort();
    });
}

void RemoteApi::finish(QNetworkReply* reply, bool json, const Handler& handler)
{
    reply->deleteLater();
    Answer answer;
    answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    answer.body = reply->read(MaximumAnswerBytes);
    const bool success = answer.status >= 200 && answer.status < 300;
    if (json || !success) {
        answer.error = RemoteError::fromReply(reply, answer.body, certificateRefused(reply));
        answer.json = QJsonDocument::fromJson(answer.body).object();
    } else if (reply->error() != QNetworkReply::NoError) {
        answer.error = RemoteError::fromReply(reply, {}, certificateRefused(reply));
    }
    if (handler)
        handler(answer);
}
