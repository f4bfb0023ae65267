#pragma once

#include "fakes/FakeCallLog.h"
#include "fakes/FakePending.h"
#include "service/VLRLoginVerifier.h"

class FakeLoginVerifier : public VLRLoginVerifier
{
public:
    FakeCallLog log;
    FakePending<VLRVerifyHandler> verifyHandlers;

    void verifyLoginWithCode(const QString& code, bool supportsMarketplace,
                             const VLRVerifyHandler& completionHandler) override;
};
