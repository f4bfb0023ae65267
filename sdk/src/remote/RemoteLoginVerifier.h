#pragma once

#include "sdk/net/RemoteEndpoint.h"

#include "service/VLRLoginVerifier.h"

// The second step of a sign-in to a team server: the server checks the code
// against its verification token, which lasts a few minutes and is good for
// one session.
class RemoteLoginVerifier : public VLRLoginVerifier
{
public:
    RemoteLoginVerifier(const RemoteEndpoint& server, const QByteArray& verification);

    void verifyLoginWithCode(const QString& code, bool supportsMarketplace,
                             const VLRVerifyHandler& completionHandler) override;

private:
    RemoteEndpoint m_server;
    QByteArray m_verification;
    bool m_used = false;
};
