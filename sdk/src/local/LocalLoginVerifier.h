#pragma once

#include "sdk/accounts/AccountStore.h"

#include "service/VLRLoginVerifier.h"

// The second step of a sign-in for an account with a second factor: a code
// of its authenticator app, within one step of clock drift, each code good
// once. Five wrong codes, or one right one, end the verifier.
class LocalLoginVerifier : public VLRLoginVerifier
{
public:
    static constexpr int allowedAttempts = 5;

    LocalLoginVerifier(const AccountStore::Account& account, const QString& databaseFolder);

    void verifyLoginWithCode(const QString& code, bool supportsMarketplace,
                             const VLRVerifyHandler& completionHandler) override;

private:
    AccountStore::Account m_account;
    QString m_databaseFolder;
    int m_attempts = 0;
    bool m_used = false;
};
