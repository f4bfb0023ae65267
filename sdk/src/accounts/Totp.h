#pragma once

#include <QByteArray>
#include <QString>

// Time-based one-time passwords (RFC 6238) as authenticator apps make them:
// HMAC-SHA-1, steps of 30 seconds, 6 digits.
class Totp
{
public:
    static constexpr qint64 period = 30;
    static constexpr int digits = 6;
    // How many steps a code may be early or late: one, for clock drift.
    static constexpr qint64 drift = 1;

    static qint64 stepAt(qint64 unixSeconds) { return unixSeconds / period; }
    // The code of one step (HOTP of RFC 4226 with the step as counter).
    static QString code(const QByteArray& secret, qint64 step, int length = digits);
    // The step that the code belongs to, within the drift of now and after
    // lastUsedStep (a code is good once); -1 when there is none.
    static qint64 verify(const QByteArray& secret, const QString& code, qint64 unixSeconds, qint64 lastUsedStep);

    static QByteArray newSecret();
    // The URI that authenticator apps read, usually from a QR code.
    static QString provisioningURI(const QByteArray& secret, const QString& account);
};
