#pragma once

#include "service/VLRTypes.h"

class LoginViewControllerDelegate
{
public:
    virtual ~LoginViewControllerDelegate() = default;
    virtual void didLoginWithSession(const VLRUserSessionPtr& session, bool bypassedUI) = 0;
    virtual void loginWithVerifier(const VLRLoginVerifierPtr& verifier) = 0;
    virtual void currentVersionIsUnsupported() = 0;
};
