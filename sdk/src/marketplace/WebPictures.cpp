#include "sdk/marketplace/WebPictures.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>

namespace {
constexpr qint64 largestPicture = 8 * 1024 * 1024;
constexpr int timeoutMs = 30000;
} // namespace

WebPictures::WebPictures(QObject* parent)
    : QObject(parent)
{ }

bool WebPictures::fetches(const QUrl& url)
{
    return url.isValid() && (url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http"))
        && !url.host().isEmpty();
}

void WebPictures::want(const QUrl& url, const Arrived& arrived)
{
    if (!fetches(url))
        return;
    if (const auto fetched = m_fetched.constFind(url); fetched != m_fetched.constEnd()) {
        if (!fetched->isNull())
            arrived(*fetched);
        return;
    }
    const bool asked = m_waiting.contains(url);
    m_waiting[url].append(arrived);
    if (!asked)
        fetch(url);
}

void WebPictures::fetch(const QUrl& url)
{
    if (!m_network)
        m_network = new QNetworkAccessManager(this);
    QNetworkRequest request(url);
    request.setTransferTimeout(timeoutMs);
    QNetworkReply* reply = m_network->get(request);
    connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received, qint64 total) {
        if (received > largestPicture || total > largestPicture)
            reply->abort();
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply, url] {
        reply->deleteLater();
        const QImage picture = reply->error() == QNetworkReply::NoError ? QImage::fromData(reply->readAll()) : QImage();
        if (picture.isNull())
            qInfo("No picture at %s: %s", qUtf8Printable(url.toDisplayString()),
                  qUtf8Printable(reply->error() == QNetworkReply::NoError ? QStringLiteral("not a picture")
                                                                          : reply->errorString()));
        m_fetched.insert(url, picture);
        const QList<Arrived> waiting = m_waiting.take(url);
        if (!picture.isNull())
            for (const Arrived& arrived : waiting)
                arrived(picture);
    });
}
