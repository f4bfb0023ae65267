#pragma once

#include "service/VLRError.h"

#include <QString>

class QNetworkReply;

// The failures of talking to a team server: the server's own answers keep
// the domain, code and text it gave; what went wrong on the way (no route,
// a certificate not trusted, an answer that makes no sense) gets a text that
// says what to do about it.
class RemoteError
{
public:
    enum Code : qint64 {
        // VLRWebErrorDomain, as the server numbers them.
        WrongCredentials = vlr::WrongCredentialsError,
        WrongCode = 3,
        TokenExpired = 4,
        NotSignedIn = 5,
        // VLRFrameworkErrorDomain: this side of the connection.
        Unreachable = 40,
        UntrustedCertificate = 41,
        UnreadableAnswer = 42,
        BadSettings = 43,
        NotAvailable = 44,
    };

    static vlr::Error make(Code code, const QString& detail = QString());
    // What a finished reply with this body means; no error for 2xx with a
    // JSON object (or nothing) as body. `untrusted` says that the TLS
    // handshake refused the server's certificate.
    static vlr::OptionalError fromReply(QNetworkReply* reply, const QByteArray& body, bool untrusted);
    static bool isSignedOut(const vlr::Error& error);
};
