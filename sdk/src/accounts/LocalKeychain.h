#pragma once

#include "service/VLRKeychain.h"

// The password lives in the desktop's keyring (Secret Service or KWallet)
// under one fixed service and key. The keyring answers asynchronously; each
// call waits for the answer in a local event loop, so that the GUI keeps
// running while the keyring works (or asks the user to unlock it).
class LocalKeychain : public VLRKeychain
{
public:
    QString loadPassword() override;
    void savePassword(const QString& password) override;
    void deletePassword() override;
};
