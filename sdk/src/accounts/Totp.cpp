#include "sdk/accounts/Totp.h"

#include "sdk/accounts/Base32.h"
#include "sdk/accounts/Sodium.h"

#include <QMessageAuthenticationCode>
#include <QUrl>
#include <QtEndian>

#include <sodium.h>

QString Totp::code(const QByteArray& secret, qint64 step, int length)
{
    QByteArray counter(8, '\0');
    qToBigEndian(quint64(step), counter.data());
    const QByteArray mac = QMessageAuthenticationCode::hash(counter, secret, QCryptographicHash::Sha1);
    const int offset = mac.at(mac.size() - 1) & 0x0f;
    const quint32 binary = (quint32(quint8(mac.at(offset)) & 0x7f) << 24) | (quint32(quint8(mac.at(offset + 1))) << 16)
        | (quint32(quint8(mac.at(offset + 2))) << 8) | quint32(quint8(mac.at(offset + 3)));
    quint64 modulus = 1;
    for (int i = 0; i < length; ++i)
        modulus *= 10;
    return QStringLiteral("%1").arg(quint64(binary) % modulus, length, 10, QLatin1Char('0'));
}

qint64 Totp::verify(const QByteArray& secret, const QString& code, qint64 unixSeconds, qint64 lastUsedStep)
{
    QString given = code;
    given.remove(QLatin1Char(' '));
    if (secret.isEmpty() || given.size() != digits)
        return -1;
    const qint64 now = stepAt(unixSeconds);
    for (qint64 step = now - drift; step <= now + drift; ++step) {
        if (step <= lastUsedStep)
            continue;
        const QByteArray expected = Totp::code(secret, step).toLatin1();
        const QByteArray offered = given.toLatin1();
        if (sodium_memcmp(expected.constData(), offered.constData(), size_t(digits)) == 0)
            return step;
    }
    return -1;
}

QByteArray Totp::newSecret()
{
    Sodium::initialise();
    QByteArray secret(20, '\0');
    randombytes_buf(secret.data(), size_t(secret.size()));
    return secret;
}

QString Totp::provisioningURI(const QByteArray& secret, const QString& account)
{
    const QString label = QString::fromLatin1(QUrl::toPercentEncoding(QStringLiteral("Veluria:") + account, ":@"));
    return QStringLiteral("otpauth://totp/%1?secret=%2&issuer=Veluria&algorithm=SHA1&digits=%3&period=%4")
        .arg(label, Base32::encode(secret))
        .arg(digits)
        .arg(period);
}
