#pragma once

#include "service/VLRTypes.h"

class LoginMfaPage;

class LoginMfaViewControllerDelegate
{
public:
    virtual ~LoginMfaViewControllerDelegate() = default;
    virtual void didLoginWithSession(const VLRUserSessionPtr& session) = 0;
    virtual void cancelMfa(LoginMfaPage* controller) = 0;
};
