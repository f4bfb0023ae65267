#pragma once

#include "platform/ClientServices.h"
#include "service/VLRError.h"
#include "service/VLRTypes.h"
#include "signin/LoginPage.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRResponderView.h"
#include "widgets/VLRResponderViewDelegate.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QStringList>

class LocalPageWindow;

// The sign-in page: gathers address and password, signs in silently at start
// from what it stored the last time, tells why a sign-in failed, hands over
// to the second factor, and carries a hidden selector of the service's
// environment. The session it gets goes to its delegate, which binds it.
class LoginViewController : public QObject, public LoginPage, public VLRResponderViewDelegate
{
    Q_OBJECT

public:
    // The client's key, handed to the library at every sign-in.
    static inline const QString APIKey = QStringLiteral("lumenra-courier-token");

    explicit LoginViewController(const ClientServices& services, QObject* parent = nullptr);
    ~LoginViewController() override;

    // Built at the first request, which starts the silent sign-in.
    QWidget* view() override;
    void setDelegate(LoginViewControllerDelegate* delegate) override { m_delegate = delegate; }
    LoginViewControllerDelegate* delegate() const { return m_delegate; }

    void defaultSignIn() override;
    // The one sign-in procedure; bypass means no gesture of the user started
    // it, and then nothing is shown whatever happens.
    void signInBypassUI(bool bypass);
    void clearPassword() override;
    // Shows the environment selector if hidden, hides it if shown.
    void toggleEnvironmentPopUp() override;

    // Actions of the view.
    void signIn();
    void forgotPassword();
    void environmentChanged();

    // Callbacks of the fields and of the view.
    void controlTextDidBeginEditing(QLineEdit* field);
    void responderViewFlagsChanged(VLRResponderView* view, QKeyEvent* event) override;

    // Elements of the view; nullptr until it is built.
    QLineEdit* emailField() const { return m_emailField; }
    QLineEdit* passwordField() const { return m_passwordField; }
    VLRButton* forgotPasswordButton() const { return m_forgotPasswordButton; }
    VLRButton* signInButton() const { return m_signInButton; }
    QComboBox* environmentButton() const { return m_environmentButton; }
    QLabel* errorLabel() const { return m_errorLabel; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void loadView();
    void didSignIn(const VLRUserSessionPtr& session, const VLRLoginVerifierPtr& verifier,
                   const vlr::OptionalError& error, const QString& email, const QString& password, bool bypass);
    void showErrorMessage(const QString& message);
    void enableControls(bool enabled);
    void setBackgroundColorForTextField(const QColor& color, QLineEdit* field);
    void updateEnvironment();

    QPointer<VLRResponderView> m_view;
    QPointer<QLineEdit> m_emailField;
    QPointer<QLineEdit> m_passwordField;
    QPointer<VLRButton> m_forgotPasswordButton;
    QPointer<VLRButton> m_signInButton;
    QPointer<QComboBox> m_environmentButton;
    QPointer<QLabel> m_errorLabel;
    QPointer<LocalPageWindow> m_resetPasswordWindow;
    ClientServices m_services;
    LoginViewControllerDelegate* m_delegate = nullptr;
};
