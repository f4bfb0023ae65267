#pragma once

#include <QByteArray>
#include <QList>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QString>
#include <QUrl>

class QNetworkRequest;

// Where a team server is and how it is trusted, with the session's token
// once signed in. A plain value: copies go to worker threads.
//
// The server's certificate must be signed by one of the system's
// authorities or be one that the user trusted explicitly by naming its file
// in the library settings; anything else is refused by the TLS handshake.
struct RemoteEndpoint
{
    // https://host[:port], without a path.
    QUrl base;
    // Bearer token of the session; empty before sign-in.
    QByteArray token;
    // Certificates trusted beyond the system's authorities.
    QList<QSslCertificate> trusted;

    bool isValid() const { return base.isValid() && !base.host().isEmpty(); }
    // The domain name the environment selector shows for this server.
    QString domainName() const { return base.host().toLower(); }
    // base + "/v1/" + path (path without a leading slash, may carry a query).
    QUrl apiUrl(const QString& path) const;
    QSslConfiguration sslConfiguration() const;
    // A request to the API with the token, JSON content type and TLS set.
    QNetworkRequest request(const QString& path) const;

    // The server named in ~/.config/Veluria/VeluriaService.ini:
    //   [server]
    //   address=https://veluria.example.org:8443
    //   trustedCertificate=/path/to/server.crt   (optional, PEM)
    // Invalid (isValid() false) when none is configured; failure says why a
    // configured one can't be used (an unreadable certificate, a plain
    // http address).
    static RemoteEndpoint fromSettings(QString* failure = nullptr);
};
