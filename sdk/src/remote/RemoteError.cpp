#include "sdk/remote/RemoteError.h"

#include "sdk/base/ServiceError.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkReply>

namespace {

const QString settingsFile = QStringLiteral("~/.config/Veluria/VeluriaService.ini");

QString describe(RemoteError::Code code, const QString& detail)
{
    switch (code) {
    case RemoteError::WrongCredentials:
    case RemoteError::WrongCode:
    case RemoteError::TokenExpired:
        // Only the server answers these, with texts of its own.
        return detail;
    case RemoteError::NotSignedIn:
        return ServiceError::make(ServiceError::SignedOut).localizedDescription;
    case RemoteError::Unreachable:
        return QStringLiteral("The Veluria server %1 can't be reached. Check the network connection.").arg(detail);
    case RemoteError::UntrustedCertificate:
        // Short enough for the sign-in page, and it names the setting.
        return QStringLiteral("The certificate of %1 is not trusted. To trust it, set trustedCertificate= in %2.")
            .arg(detail, settingsFile);
    case RemoteError::UnreadableAnswer:
        return QStringLiteral("The Veluria server %1 gave an answer that Veluria can't read.").arg(detail);
    case RemoteError::BadSettings:
        return detail;
    case RemoteError::NotAvailable:
        return QStringLiteral("%1 is not available with a Veluria server yet.").arg(detail);
    }
    return detail;
}

} // namespace

vlr::Error RemoteError::make(Code code, const QString& detail)
{
    const QString domain = code < Unreachable ? vlr::VLRWebErrorDomain : vlr::VLRFrameworkErrorDomain;
    return vlr::makeError(domain, code, describe(code, detail));
}

vlr::OptionalError RemoteError::fromReply(QNetworkReply* reply, const QByteArray& body, bool untrusted)
{
    const QString server = reply->url().authority();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (untrusted)
        return make(UntrustedCertificate, server);
    if (status == 0) {
        if (reply->error() == QNetworkReply::OperationCanceledError)
            return vlr::makeError(vlr::NSCocoaErrorDomain, vlr::NSUserCancelledError, reply->errorString());
        return make(Unreachable, server);
    }
    QJsonParseError parsed;
    const QJsonDocument document = QJsonDocument::fromJson(body, &parsed);
    if (status >= 200 && status < 300) {
        if (body.isEmpty() || document.isObject())
            return std::nullopt;
        return make(UnreadableAnswer, server);
    }
    // The server's own texts are written for the user.
    const QJsonObject error = document.object().value(QStringLiteral("error")).toObject();
    const QString message = error.value(QStringLiteral("message")).toString();
    if (message.isEmpty())
        return make(UnreadableAnswer, server);
    const QString domain = error.value(QStringLiteral("domain")).toString(vlr::VLRWebErrorDomain);
    return vlr::makeError(domain, error.value(QStringLiteral("code")).toInteger(status), message);
}

bool RemoteError::isSignedOut(const vlr::Error& error)
{
    return error.domain == vlr::VLRWebErrorDomain && (error.code == TokenExpired || error.code == NotSignedIn);
}
