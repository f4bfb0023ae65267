#pragma once

#include "service/VLRObject.h"
#include "service/VLRTypes.h"

using VLRVerifyHandler = std::function<void(const VLRUserSessionPtr& session, const vlr::OptionalError& error)>;

// A sign-in that waits for its second factor.
class VLRLoginVerifier : public VLRObject
{
public:
    virtual void verifyLoginWithCode(const QString& code, bool supportsMarketplace,
                                     const VLRVerifyHandler& completionHandler) = 0;
};
