#pragma once

#include <QString>

// Passwords are kept only as Argon2id hashes in libsodium's string form
// (algorithm, parameters and salt in the text).
class PasswordHasher
{
public:
    // A null string when the hash could not be made (out of memory).
    static QString hash(const QString& password);
    static bool verify(const QString& password, const QString& storedHash);
    // Spends the same time as a real verification, so that an unknown
    // address can't be told from a wrong password by the answer's delay.
    static void verifyNothing(const QString& password);
};
