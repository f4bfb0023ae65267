#pragma once

class QWidget;
class LoginViewControllerDelegate;

// The login form as its owner drives it.
class LoginPage
{
public:
    virtual ~LoginPage() = default;
    virtual QWidget* view() = 0;
    virtual void setDelegate(LoginViewControllerDelegate* delegate) = 0;

    // Forgets the typed and the stored password.
    virtual void clearPassword() = 0;
    // Signs in silently from the stored address and password, if any.
    virtual void defaultSignIn() = 0;
    // Shows the hidden environment selector, or hides it.
    virtual void toggleEnvironmentPopUp() = 0;
};
