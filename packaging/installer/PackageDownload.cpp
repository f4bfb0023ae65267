#include "installer/PackageDownload.h"

#include <QNetworkReply>

PackageDownload::PackageDownload(QObject* parent)
    : QObject(parent)
{ }

void PackageDownload::start(const QUrl& url, const QString& destination, qint64 maximumSize, Handler handler)
{
    m_handler = std::move(handler);
    m_maximumSize = maximumSize;
    m_hash.reset();
    m_failure = QString();
    m_file.setFileName(destination);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        finish(QStringLiteral("%1 can't be written: %2").arg(destination, m_file.errorString()));
        return;
    }
    m_file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    QNetworkRequest request(url);
    request.setTransferTimeout(TimeoutMilliseconds);
    QNetworkReply* reply = m_network.get(request);
    connect(reply, &QNetworkReply::readyRead, this, [this, reply] {
        const QByteArray chunk = reply->readAll();
        if (!m_failure.isNull())
            return;
        if (m_file.size() + chunk.size() > m_maximumSize) {
            m_failure = QStringLiteral("the package is larger than %1 bytes").arg(m_maximumSize);
            reply->abort();
            return;
        }
        m_hash.addData(chunk);
        if (m_file.write(chunk) != chunk.size()) {
            m_failure = QStringLiteral("the package can't be written: %1").arg(m_file.errorString());
            reply->abort();
        }
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        reply->deleteLater();
        const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
        if (!m_failure.isNull())
            finish(m_failure);
        else if (reply->error() != QNetworkReply::NoError)
            finish(reply->errorString());
        else if (status.isValid() && status.toInt() != 200)
            finish(QStringLiteral("the server answered %1").arg(status.toInt()));
        else
            finish(QString());
    });
}

void PackageDownload::finish(const QString& error)
{
    const bool flushed = !m_file.isOpen() || m_file.flush();
    m_file.close();
    Result result;
    result.error = error.isNull() && !flushed ? QStringLiteral("the package can't be written") : error;
    if (result.error.isNull())
        result.sha256Hex = m_hash.result().toHex();
    if (Handler handler = std::exchange(m_handler, nullptr))
        handler(result);
}
