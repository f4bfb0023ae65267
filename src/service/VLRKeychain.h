#pragma once

#include <QString>

// The one stored password of the client.
class VLRKeychain
{
public:
    // Null when there is none, or no keychain on this machine.
    static QString loadPassword();
    static void savePassword(const QString& password);
    static void deletePassword();
};
