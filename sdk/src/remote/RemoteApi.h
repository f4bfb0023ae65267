#pragma once

#include "sdk/net/RemoteEndpoint.h"

#include "service/VLRError.h"

#include <QByteArray>
#include <QJsonObject>

#include <functional>
#include <optional>

class QNetworkAccessManager;
class QNetworkReply;

// Requests to a team server's API from the GUI thread, never blocking it:
// the answer comes to the handler on the GUI thread, once.
class RemoteApi
{
public:
    struct Answer
    {
        int status = 0;
        QJsonObject json;
        QByteArray body;
        vlr::OptionalError error;
    };
    using Handler = std::function<void(const Answer& answer)>;

    // How long an answer may keep the client waiting.
    static constexpr int TimeoutMilliseconds = 30000;

    // The GUI thread's network access for the server as this endpoint
    // trusts it, owned by the application object. Connections are kept for
    // reuse only under the same trust, so that one made while a certificate
    // was trusted never serves a request after the user took that back.
    static QNetworkAccessManager* network(const RemoteEndpoint& endpoint);

    // method "GET", "POST", "DELETE"; a body only when given.
    static void send(const RemoteEndpoint& endpoint, const QByteArray& method, const QString& path,
                     const std::optional<QJsonObject>& body, Handler handler);
    // A GET whose answer is not JSON (an image).
    static void fetch(const RemoteEndpoint& endpoint, const QString& path, Handler handler);

    // Marks a reply whose TLS handshake refuses the server's certificate, so
    // that its failure says so.
    static void watchCertificate(QNetworkReply* reply);
    static bool certificateRefused(QNetworkReply* reply);

private:
    static void capSize(QNetworkReply* reply);
    static void finish(QNetworkReply* reply, bool json, const Handler& handler);
};
