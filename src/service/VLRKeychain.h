#pragma once

#include <QString>

// The one stored password of the client.
class VLRKeychain
{
public:
    virtual ~VLRKeychain() = default;
    // Null when there is none, or no keychain on this machine.
    virtual QString loadPassword() = 0;
    virtual void savePassword(const QString& password) = 0;
    virtual void deletePassword() = 0;
};
