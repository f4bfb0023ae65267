#include "sdk/marketplace/ServerCall.h"

#include <QEventLoop>
#include <QFile>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

namespace {
// While a download runs, how often it looks whether it should stop.
constexpr int stopCheckMs = 100;

ServerCall::Answer finish(QNetworkReply* reply, bool stopped)
{
    ServerCall::Answer answer;
    answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    answer.body = reply->readAll();
    if (answer.status == 0)
        answer.failure = stopped ? QStringLiteral("stopped") : reply->errorString();
    return answer;
}
} // namespace

QJsonObject ServerCall::Answer::json() const
{
    return QJsonDocument::fromJson(body).object();
}

QString ServerCall::Answer::message() const
{
    const QString server = json().value(QStringLiteral("error")).toObject().value(QStringLiteral("message")).toString();
    return !server.isEmpty() ? server : !failure.isEmpty() ? failure : QStringLiteral("HTTP status %1").arg(status);
}

ServerCall::ServerCall(const RemoteEndpoint& endpoint)
    : m_endpoint(endpoint)
{ }

ServerCall::Answer ServerCall::get(const QString& path) const
{
    return send("GET", path, {});
}

ServerCall::Answer ServerCall::send(const QByteArray& method, const QString& path, const QJsonObject& body) const
{
    QNetworkAccessManager network;
    QNetworkRequest request = m_endpoint.request(path);
    request.setTransferTimeout(timeoutMs);
    const QByteArray data = body.isEmpty() ? QByteArray() : QJsonDocument(body).toJson(QJsonDocument::Compact);
    std::unique_ptr<QNetworkReply> reply(network.sendCustomRequest(request, method, data));
    QEventLoop loop;
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    return finish(reply.get(), false);
}

ServerCall::Answer ServerCall::download(const QString& path, QFile* file, qint64* offset,
                                        const std::function<bool()>& shouldStop,
                                        const std::function<void(const QByteArray&)>& received) const
{
    QNetworkAccessManager network;
    QNetworkRequest request = m_endpoint.request(path);
    request.setTransferTimeout(timeoutMs);
    if (*offset > 0)
        request.setRawHeader("Range", "bytes=" + QByteArray::number(*offset) + '-');
    std::unique_ptr<QNetworkReply> reply(network.get(request));
    QEventLoop loop;
    bool stopped = false;
    bool failed = false;
    bool started = false;
    const auto take = [&] {
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (status != 200 && status != 206)
            return;
        if (!started) {
            started = true;
            // The whole content came: what the file held goes.
            if (status == 200 && *offset > 0) {
                file->resize(0);
                file->seek(0);
                *offset = 0;
            }
        }
        const QByteArray piece = reply->readAll();
        if (file->write(piece) != piece.size()) {
            failed = true;
            reply->abort();
            return;
        }
        *offset += piece.size();
        received(piece);
    };
    QObject::connect(reply.get(), &QNetworkReply::readyRead, &loop, take);
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QTimer stopCheck;
    QObject::connect(&stopCheck, &QTimer::timeout, &loop, [&] {
        if (shouldStop()) {
            stopped = true;
            reply->abort();
        }
    });
    stopCheck.start(stopCheckMs);
    loop.exec();
    if (!stopped && !failed)
        take();
    file->flush();
    Answer answer = finish(reply.get(), stopped);
    if (failed) {
        answer.status = 0;
        answer.failure = file->errorString();
    }
    return answer;
}
