#include "signin/LoginMfaViewController.h"

#include "app/AppFlavor.h"
#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "service/VLRLoginVerifier.h"
#include "signin/LoginMfaViewControllerDelegate.h"
#include "widgets/PageStyle.h"
#include "widgets/TextFieldEditing.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"
#include "widgets/VLRView.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

constexpr int CodeFieldWidth = 200;
constexpr int SignInButtonWidth = 200;
constexpr int SignInButtonHeight = 32;

} // namespace

LoginMfaViewController::LoginMfaViewController(QObject* parent)
    : QObject(parent)
{ }

LoginMfaViewController::~LoginMfaViewController()
{
    m_loginVerifier.reset();
    m_delegate = nullptr;
    delete m_view;
}

QWidget* LoginMfaViewController::view()
{
    if (!m_view)
        loadView();
    return m_view;
}

void LoginMfaViewController::loadView()
{
    m_view = new VLRView();
    PageStyle::applyPageLook(m_view);

    auto* mark = PageStyle::makeMark(m_view);
    auto* heading = PageStyle::makeHeading(vlr::localized("Two-step verification"), m_view);
    auto* explanation = PageStyle::makeSecondaryLine(
        vlr::localized("Enter the code that your authenticator app shows for your Veluria account."), m_view);
    explanation->setFixedWidth(260);

    m_mfaCodeField = PageStyle::makeTextField(vlr::localized("Code"), m_view);
    m_mfaCodeField->setFixedWidth(CodeFieldWidth);
    m_mfaCodeField->setAlignment(Qt::AlignCenter);
    m_mfaCodeField->setFont(VLRFonts::muli(16));

    m_errorLabel = PageStyle::makeErrorLabel(m_view);
    m_errorLabel->setFixedWidth(280);
    m_errorLabel->setMinimumHeight(18);
    m_errorLabel->hide();
    QSizePolicy policy = m_errorLabel->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_errorLabel->setSizePolicy(policy);

    m_signInButton = new VLRButton(m_view);
    m_signInButton->setFixedSize(SignInButtonWidth, SignInButtonHeight);
    m_signInButton->setCursor(Qt::PointingHandCursor);
    m_signInButton->setAccessibleName(vlr::localized("Log in"));

    m_cancelButton = PageStyle::makeLinkButton(vlr::localized("Cancel"), m_view);
    policy = m_cancelButton->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_cancelButton->setSizePolicy(policy);

    auto* layout = new QVBoxLayout(m_view);
    layout->setContentsMargins(24, 24, 24, 24);
    layout->setSpacing(0);
    layout->addStretch(3);
    layout->addWidget(mark, 0, Qt::AlignHCenter);
    layout->addSpacing(14);
    layout->addWidget(heading, 0, Qt::AlignHCenter);
    layout->addSpacing(6);
    layout->addWidget(explanation, 0, Qt::AlignHCenter);
    layout->addSpacing(26);
    layout->addWidget(m_mfaCodeField, 0, Qt::AlignHCenter);
    layout->addSpacing(12);
    layout->addWidget(m_errorLabel, 0, Qt::AlignHCenter);
    layout->addSpacing(12);
    layout->addWidget(m_signInButton, 0, Qt::AlignHCenter);
    layout->addSpacing(10);
    layout->addWidget(m_cancelButton, 0, Qt::AlignHCenter);
    layout->addStretch(5);

    connect(new TextFieldEditing(m_mfaCodeField), &TextFieldEditing::didBeginEditing, this,
            &LoginMfaViewController::controlTextDidBeginEditing);
    connect(m_mfaCodeField, &QLineEdit::returnPressed, this, &LoginMfaViewController::signIn);
    connect(m_signInButton, &VLRButton::clicked, this, &LoginMfaViewController::signIn);
    connect(m_cancelButton, &VLRButton::clicked, this, &LoginMfaViewController::cancel);

    VLRAttributedString cancelTitle = m_cancelButton->attributedTitle();
    cancelTitle.foregroundColor = VLRColors::textColor();
    m_cancelButton->setAttributedTitle(cancelTitle);
    m_cancelButton->setMouseOverStyle(VLRMouseOverStyleBackground);

    m_signInButton->setDefaultImage(VLRImageCatalogue::imageNamed(QStringLiteral("log_in_button_inactive")));
    m_signInButton->setMouseOverImage(VLRImageCatalogue::imageNamed(QStringLiteral("log_in_button_active")));
    m_signInButton->setClickedImage(VLRImageCatalogue::imageNamed(QStringLiteral("log_in_button_active")));
}

void LoginMfaViewController::setLoginVerifier(const VLRLoginVerifierPtr& verifier)
{
    m_loginVerifier = verifier;
    if (verifier && m_mfaCodeField)
        m_mfaCodeField->setFocus();
}

void LoginMfaViewController::signIn()
{
    // The code goes as typed: judging it, empty or not, is the service's job.
    const QString code = m_mfaCodeField ? m_mfaCodeField->text() : QString();
    enableControls(false);
    showErrorMessage(QString(""));
    if (!m_loginVerifier)
        return;
    QPointer<LoginMfaViewController> self(this);
    m_loginVerifier->verifyLoginWithCode(code, AppFlavor::supportsMarketplace(),
                                         [self](const VLRUserSessionPtr& session, const vlr::OptionalError& error) {
                                             if (self)
                                                 self->didVerify(session, error);
                                         });
}

void LoginMfaViewController::didVerify(const VLRUserSessionPtr& session, const vlr::OptionalError& error)
{
    // The verifier may own the handler that runs now; it stays alive until
    // the handler is over.
    const VLRLoginVerifierPtr verifier = m_loginVerifier;
    if (error && !error->localizedDescription.isNull()) {
        // Verifier and code stay, so that the user can try again.
        showErrorMessage(error->localizedDescription);
    } else {
        showErrorMessage(QString(""));
        m_loginVerifier.reset();
        if (m_mfaCodeField)
            m_mfaCodeField->clear();
        if (m_delegate)
            m_delegate->didLoginWithSession(session);
    }
    enableControls(true);
}

void LoginMfaViewController::cancel()
{
    if (m_mfaCodeField)
        m_mfaCodeField->clear();
    m_loginVerifier.reset();
    if (m_delegate)
        m_delegate->cancelMfa(this);
    // The pointer has gone with the page: the button drops its mouse-over look.
    if (m_cancelButton) {
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(m_cancelButton, &leave);
    }
    showErrorMessage(QString(""));
}

void LoginMfaViewController::controlTextDidBeginEditing(QLineEdit* field)
{
    if (PageStyle::backgroundColor(field) != QColor(Qt::white))
        setBackgroundColorForTextField(Qt::white, field);
}

void LoginMfaViewController::enableControls(bool enabled)
{
    for (QWidget* control : {static_cast<QWidget*>(m_signInButton), static_cast<QWidget*>(m_mfaCodeField),
                             static_cast<QWidget*>(m_cancelButton)})
        if (control)
            control->setEnabled(enabled);
    // A verification under way can't be cancelled.
    if (m_cancelButton)
        m_cancelButton->setHidden(!enabled);
}

void LoginMfaViewController::showErrorMessage(const QString& message)
{
    if (!m_errorLabel)
        return;
    m_errorLabel->show();
    m_errorLabel->setText(message);
}

void LoginMfaViewController::setBackgroundColorForTextField(const QColor& color, QLineEdit* field)
{
    if (!field)
        return;
    PageStyle::setBackgroundColor(field, color);
    field->setReadOnly(true);
    field->setReadOnly(false);
}
