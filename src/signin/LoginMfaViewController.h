#pragma once

#include "service/VLRError.h"
#include "service/VLRTypes.h"
#include "signin/LoginMfaPage.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRView.h"

#include <QLabel>
#include <QLineEdit>
#include <QObject>
#include <QPointer>

// The page that asks for the second factor once the first step of a sign-in
// answered with a verifier. It sends the code as typed and hands the new
// session to its delegate; every failure text is the library's.
class LoginMfaViewController : public QObject, public LoginMfaPage
{
    Q_OBJECT

public:
    explicit LoginMfaViewController(QObject* parent = nullptr);
    ~LoginMfaViewController() override;

    QWidget* view() override;
    void setDelegate(LoginMfaViewControllerDelegate* delegate) override { m_delegate = delegate; }
    LoginMfaViewControllerDelegate* delegate() const { return m_delegate; }

    // A new verification puts the cursor in the code field.
    void setLoginVerifier(const VLRLoginVerifierPtr& verifier) override;
    const VLRLoginVerifierPtr& loginVerifier() const { return m_loginVerifier; }

    // Actions of the view.
    void signIn();
    void cancel();

    // Callback of the code field.
    void controlTextDidBeginEditing(QLineEdit* field);

    // Elements of the view; nullptr until it is built.
    QLineEdit* mfaCodeField() const { return m_mfaCodeField; }
    VLRButton* signInButton() const { return m_signInButton; }
    QLabel* errorLabel() const { return m_errorLabel; }
    VLRButton* cancelButton() const { return m_cancelButton; }

private:
    void loadView();
    void didVerify(const VLRUserSessionPtr& session, const vlr::OptionalError& error);
    void enableControls(bool enabled);
    void showErrorMessage(const QString& message);
    void setBackgroundColorForTextField(const QColor& color, QLineEdit* field);

    QPointer<VLRView> m_view;
    QPointer<QLineEdit> m_mfaCodeField;
    QPointer<VLRButton> m_signInButton;
    QPointer<QLabel> m_errorLabel;
    QPointer<VLRButton> m_cancelButton;
    LoginMfaViewControllerDelegate* m_delegate = nullptr;
    VLRLoginVerifierPtr m_loginVerifier;
};
