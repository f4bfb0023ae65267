#pragma once

#include "service/VLRTypes.h"

class QWidget;
class LoginMfaViewControllerDelegate;

// The second-factor form as its owner drives it.
class LoginMfaPage
{
public:
    virtual ~LoginMfaPage() = default;
    virtual QWidget* view() = 0;
    virtual void setDelegate(LoginMfaViewControllerDelegate* delegate) = 0;

    virtual void setLoginVerifier(const VLRLoginVerifierPtr& verifier) = 0;
};
