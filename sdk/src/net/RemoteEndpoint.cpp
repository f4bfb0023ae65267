#include "sdk/net/RemoteEndpoint.h"

#include <QFile>
#include <QNetworkRequest>
#include <QSettings>

QUrl RemoteEndpoint::apiUrl(const QString& path) const
{
    QUrl url = base;
    const int query = path.indexOf(QLatin1Char('?'));
    url.setPath(QStringLiteral("/v1/") + (query < 0 ? path : path.left(query)));
    if (query >= 0)
        url.setQuery(path.mid(query + 1));
    return url;
}

QSslConfiguration RemoteEndpoint::sslConfiguration() const
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    if (!trusted.isEmpty()) {
        QList<QSslCertificate> authorities = configuration.caCertificates();
        authorities += trusted;
        configuration.setCaCertificates(authorities);
    }
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    return configuration;
}

QNetworkRequest RemoteEndpoint::request(const QString& path) const
{
    QNetworkRequest request(apiUrl(path));
    request.setSslConfiguration(sslConfiguration());
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    if (!token.isEmpty())
        request.setRawHeader("Authorization", "Bearer " + token);
    return request;
}

RemoteEndpoint RemoteEndpoint::fromSettings(QString* failure)
{
    const QSettings settings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Veluria"),
                             QStringLiteral("VeluriaService"));
    RemoteEndpoint endpoint;
    const QString address = settings.value(QStringLiteral("server/address")).toString().trimmed();
    if (address.isEmpty())
        return endpoint;
    const QUrl url(address, QUrl::StrictMode);
    if (!url.isValid() || url.scheme() != QLatin1String("https") || url.host().isEmpty()) {
        if (failure)
            *failure = QStringLiteral("The server address \"%1\" is not an https:// address.").arg(address);
        return endpoint;
    }
    const QString certificate = settings.value(QStringLiteral("server/trustedCertificate")).toString().trimmed();
    if (!certificate.isEmpty()) {
        QFile file(certificate);
        if (!file.open(QIODevice::ReadOnly)) {
            if (failure)
                *failure =
                    QStringLiteral("The trusted certificate %1 can't be read: %2").arg(certificate, file.errorString());
            return endpoint;
        }
        endpoint.trusted = QSslCertificate::fromData(file.readAll(), QSsl::Pem);
        if (endpoint.trusted.isEmpty()) {
            if (failure)
                *failure = QStringLiteral("The trusted certificate %1 holds no PEM certificate.").arg(certificate);
            return endpoint;
        }
    }
    endpoint.base = QUrl(url.scheme() + QStringLiteral("://") + url.authority());
    return endpoint;
}
