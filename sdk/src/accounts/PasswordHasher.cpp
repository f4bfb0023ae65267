#include "sdk/accounts/PasswordHasher.h"

#include "sdk/accounts/Sodium.h"

#include <sodium.h>

#include <mutex>

QString PasswordHasher::hash(const QString& password)
{
    Sodium::initialise();
    const QByteArray utf8 = password.toUtf8();
    char stored[crypto_pwhash_STRBYTES];
    if (crypto_pwhash_str_alg(stored, utf8.constData(), quint64(utf8.size()), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                              crypto_pwhash_MEMLIMIT_INTERACTIVE, crypto_pwhash_ALG_ARGON2ID13)
        != 0)
        return {};
    return QString::fromLatin1(stored);
}

bool PasswordHasher::verify(const QString& password, const QString& storedHash)
{
    Sodium::initialise();
    const QByteArray utf8 = password.toUtf8();
    const QByteArray stored = storedHash.toLatin1();
    return !stored.isEmpty()
        && crypto_pwhash_str_verify(stored.constData(), utf8.constData(), quint64(utf8.size())) == 0;
}

void PasswordHasher::verifyNothing(const QString& password)
{
    static std::once_flag made;
    static QString decoy;
    std::call_once(made, [] { decoy = hash(QStringLiteral("no account has this password")); });
    verify(password, decoy);
}
