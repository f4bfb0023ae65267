#include "signin/LoginViewController.h"

#include "app/AppFlavor.h"
#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "app/VLRUserDefaultsKeys.h"
#include "platform/VLRDesktopServices.h"
#include "platform/VLRUserDefaults.h"
#include "service/VLREnvironment.h"
#include "service/VLRKeychain.h"
#include "service/VLRLoginCredentials.h"
#include "service/VLRServiceLibrary.h"
#include "service/VLRUserSession.h"
#include "service/VLRUtils.h"
#include "signin/EnvironmentPopUp.h"
#include "signin/LoginViewControllerDelegate.h"
#include "signin/SignInLog.h"
#include "widgets/LocalPageWindow.h"
#include "widgets/PageStyle.h"
#include "widgets/TextFieldEditing.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"
#include "widgets/VLRResponderView.h"

#include <QComboBox>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

constexpr int FieldWidth = 260;
constexpr int SignInButtonWidth = 200;
constexpr int SignInButtonHeight = 32;
constexpr int EnvironmentButtonWidth = 180;

// The chord that shows the environment selector: Control, Alt and Super
// (which the desktop reports as Meta) held together.
constexpr Qt::KeyboardModifiers EnvironmentChord = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

Qt::KeyboardModifiers modifierOfKey(int key)
{
    switch (key) {
    case Qt::Key_Shift:
        return Qt::ShiftModifier;
    case Qt::Key_Control:
        return Qt::ControlModifier;
    case Qt::Key_Alt:
        return Qt::AltModifier;
    case Qt::Key_AltGr:
        return Qt::GroupSwitchModifier;
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
        return Qt::MetaModifier;
    default:
        return Qt::NoModifier;
    }
}

// The modifiers held once the event is over. Desktops differ on whether a
// modifier's own press or release is already counted in the event, so the
// key itself decides.
Qt::KeyboardModifiers modifierFlags(const QKeyEvent* event)
{
    Qt::KeyboardModifiers flags = event->modifiers();
    const Qt::KeyboardModifiers own = modifierOfKey(event->key());
    if (event->type() == QEvent::KeyPress)
        flags |= own;
    else
        flags &= ~own;
    return flags;
}

} // namespace

LoginViewController::LoginViewController(const ClientServices& services, QObject* parent)
    : QObject(parent)
    , m_services(services)
{ }

LoginViewController::~LoginViewController()
{
    m_delegate = nullptr;
    delete m_view;
    delete m_resetPasswordWindow;
}

QWidget* LoginViewController::view()
{
    if (!m_view)
        loadView();
    return m_view;
}

void LoginViewController::loadView()
{
    m_view = new VLRResponderView();
    m_view->setResponderDelegate(this);
    PageStyle::applyPageLook(m_view);

    auto* mark = PageStyle::makeMark(m_view);
    auto* heading = PageStyle::makeHeading(vlr::localized("Sign in to Veluria"), m_view);
    auto* subtitle = PageStyle::makeSecondaryLine(
        vlr::localized("Use the email address and password of your Veluria account."), m_view);
    subtitle->setFixedWidth(FieldWidth);

    m_emailField = PageStyle::makeTextField(vlr::localized("Email"), m_view);
    m_emailField->setFixedWidth(FieldWidth);
    m_passwordField = PageStyle::makeTextField(vlr::localized("Password"), m_view);
    m_passwordField->setFixedWidth(FieldWidth);
    m_passwordField->setEchoMode(QLineEdit::Password);

    m_errorLabel = PageStyle::makeErrorLabel(m_view);
    m_errorLabel->setFixedWidth(FieldWidth + 20);
    m_errorLabel->setMinimumHeight(18);
    m_errorLabel->hide();

    m_signInButton = new VLRButton(m_view);
    m_signInButton->setFixedSize(SignInButtonWidth, SignInButtonHeight);
    m_signInButton->setCursor(Qt::PointingHandCursor);
    m_signInButton->setAccessibleName(vlr::localized("Log in"));

    m_forgotPasswordButton = PageStyle::makeLinkButton(vlr::localized("Forgot your password?"), m_view);
    // Until a wrong credential calls for it, the link is not there.
    m_forgotPasswordButton->hide();

    m_environmentButton = new EnvironmentPopUp(m_view);
    m_environmentButton->addItems(m_services.library->environment().domainNames());
    m_environmentButton->setFixedWidth(EnvironmentButtonWidth);

    auto* layout = new QVBoxLayout(m_view);
    layout->setContentsMargins(24, 24, 24, 16);
    layout->setSpacing(0);
    layout->addStretch(3);
    layout->addWidget(mark, 0, Qt::AlignHCenter);
    layout->addSpacing(14);
    layout->addWidget(heading, 0, Qt::AlignHCenter);
    layout->addSpacing(6);
    layout->addWidget(subtitle, 0, Qt::AlignHCenter);
    layout->addSpacing(26);
    layout->addWidget(m_emailField, 0, Qt::AlignHCenter);
    layout->addSpacing(10);
    layout->addWidget(m_passwordField, 0, Qt::AlignHCenter);
    layout->addSpacing(12);
    layout->addWidget(m_errorLabel, 0, Qt::AlignHCenter);
    layout->addSpacing(12);
    layout->addWidget(m_signInButton, 0, Qt::AlignHCenter);
    layout->addSpacing(10);
    layout->addWidget(m_forgotPasswordButton, 0, Qt::AlignHCenter);
    layout->addStretch(4);
    layout->addWidget(m_environmentButton, 0, Qt::AlignHCenter);

    for (QLineEdit* field : {m_emailField.data(), m_passwordField.data()}) {
        connect(new TextFieldEditing(field), &TextFieldEditing::didBeginEditing, this,
                &LoginViewController::controlTextDidBeginEditing);
        connect(field, &QLineEdit::returnPressed, this, &LoginViewController::signIn);
    }
    // An entry field keeps the release of a key to itself, so the view would
    // never hear the chord let go; the fields pass modifier releases on here.
    for (QWidget* control : {static_cast<QWidget*>(m_emailField), static_cast<QWidget*>(m_passwordField),
                             static_cast<QWidget*>(m_environmentButton)})
        control->installEventFilter(this);
    connect(m_signInButton, &VLRButton::clicked, this, &LoginViewController::signIn);
    connect(m_forgotPasswordButton, &VLRButton::clicked, this, &LoginViewController::forgotPassword);
    connect(m_environmentButton, &QComboBox::activated, this, &LoginViewController::environmentChanged);

    VLRAttributedString forgotTitle = m_forgotPasswordButton->attributedTitle();
    forgotTitle.foregroundColor = VLRColors::textColor();
    m_forgotPasswordButton->setAttributedTitle(forgotTitle);
    m_forgotPasswordButton->setMouseOverStyle(VLRMouseOverStyleBackground);

    m_signInButton->setDefaultImage(VLRImageCatalogue::imageNamed(QStringLiteral("log_in_button_inactive")));
    m_signInButton->setMouseOverImage(VLRImageCatalogue::imageNamed(QStringLiteral("log_in_button_active")));
    m_signInButton->setClickedImage(VLRImageCatalogue::imageNamed(QStringLiteral("log_in_button_active")));

    m_environmentButton->hide();
    // The keyboard goes to the address first when the page comes up.
    m_view->setFocusProxy(m_emailField);
    // Coming and going, the error line, the link and the selector leave the
    // rest of the page where it is.
    for (QWidget* occasional : {static_cast<QWidget*>(m_errorLabel), static_cast<QWidget*>(m_forgotPasswordButton),
                                static_cast<QWidget*>(m_environmentButton)}) {
        QSizePolicy policy = occasional->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        occasional->setSizePolicy(policy);
    }

    // The view is asked for while the application starts, so the silent
    // sign-in begins before the launch has finished.
    defaultSignIn();
}

void LoginViewController::defaultSignIn()
{
    QString environment;
    QString email;
    QString password;
    if (const std::optional<QVariantMap> defaults = AppFlavor::loginDefaults()) {
        environment = defaults->value(QStringLiteral("environment")).toString();
        email = defaults->value(QStringLiteral("email")).toString();
        password = defaults->value(QStringLiteral("password")).toString();
    } else {
        VLRUserDefaults* userDefaults = m_services.defaults;
        const std::optional<QVariantMap> domain =
            userDefaults->persistentDomainForName(VLRUserDefaultsPersistentDomain);
        environment = domain ? domain->value(VLRUserDefaultsKeyEnvironment).toString() : QString();
        email = userDefaults->stringForKey(VLRUserDefaultsKeyEmail);
        password = m_services.library->keychain().loadPassword();
    }

    // A stored name that no item carries leaves the selector without a
    // selection.
    if (!environment.isEmpty() && m_environmentButton)
        m_environmentButton->setCurrentIndex(m_environmentButton->findText(environment, Qt::MatchExactly));
    if (!email.isEmpty() && m_emailField)
        m_emailField->setText(email);
    if (!password.isEmpty()) {
        if (m_passwordField)
            m_passwordField->setText(password);
        signInBypassUI(true);
    }
}

void LoginViewController::signInBypassUI(bool bypass)
{
    const QString email = m_emailField ? m_emailField->text().trimmed() : QString();
    const QString password = m_passwordField ? m_passwordField->text() : QString();

    if (m_errorLabel)
        m_errorLabel->hide();

    if (email.isEmpty()) {
        if (bypass)
            return;
        setBackgroundColorForTextField(AppFlavor::errorColor(), m_emailField);
        showErrorMessage(vlr::localized("Enter your email."));
        return;
    }
    if (password.isEmpty()) {
        if (bypass)
            return;
        setBackgroundColorForTextField(AppFlavor::errorColor(), m_passwordField);
        showErrorMessage(vlr::localized("Enter your password."));
        return;
    }

    enableControls(false);
    // Every sign-in applies and stores the selected environment, also when
    // the selector was never shown.
    if (m_environmentButton)
        updateEnvironment();

    // The password stays out of the log, whatever the level.
    qCDebug(lcSignIn, "Signing in%s", bypass ? " with the stored password" : "");
    QPointer<LoginViewController> self(this);
    m_services.library->createUserSessionWithLoginCredentials(
        VLRLoginCredentials(email, password), APIKey, AppFlavor::supportsMarketplace(),
        [self, email, password, bypass](const VLRUserSessionPtr& session, const VLRLoginVerifierPtr& verifier,
                                        const vlr::OptionalError& error) {
            if (self)
                self->didSignIn(session, verifier, error, email, password, bypass);
        });
}

void LoginViewController::didSignIn(const VLRUserSessionPtr& session, const VLRLoginVerifierPtr& verifier,
                                    const vlr::OptionalError& error, const QString& email, const QString& password,
                                    bool bypass)
{
    enableControls(true);

    if (!error) {
        // Both are kept before the second factor is known to pass.
        m_services.defaults->setObject(email, VLRUserDefaultsKeyEmail);
        if (m_forgotPasswordButton)
            m_forgotPasswordButton->hide();
        m_services.library->keychain().savePassword(password);
        if (!verifier) {
            if (m_delegate)
                m_delegate->didLoginWithSession(session, bypass);
        } else if (!bypass) {
            if (m_delegate)
                m_delegate->loginWithVerifier(verifier);
        }
        // A second factor is never asked for at start: the filled page waits
        // for the user's press.
        return;
    }

    if (bypass || error->localizedDescription.isNull())
        return;
    if (error->code == vlr::WrongCredentialsError) {
        if (m_forgotPasswordButton)
            m_forgotPasswordButton->show();
    } else if (error->domain == vlr::VLRWebErrorDomain && error->code == vlr::UnsupportedVersionError) {
        if (m_delegate)
            m_delegate->currentVersionIsUnsupported();
    }
    // The text of a failed sign-in is always the library's.
    showErrorMessage(error->localizedDescription);
}

void LoginViewController::clearPassword()
{
    m_services.library->keychain().deletePassword();
    if (m_passwordField)
        m_passwordField->clear();
}

void LoginViewController::toggleEnvironmentPopUp()
{
    if (m_environmentButton)
        m_environmentButton->setHidden(!m_environmentButton->isHidden());
}

void LoginViewController::signIn()
{
    signInBypassUI(false);
}

void LoginViewController::forgotPassword()
{
    // The local service's page is on this computer, and shown in the client.
    LocalPageWindow::openURL(m_services.library->utils().resetPasswordURL(), m_services.desktop, m_resetPasswordWindow);
}

void LoginViewController::environmentChanged()
{
    updateEnvironment();
}

void LoginViewController::updateEnvironment()
{
    if (!m_environmentButton || m_environmentButton->currentIndex() < 0)
        return;
    const QString title = m_environmentButton->currentText();
    if (title.isEmpty())
        return;
    m_services.library->environment().setEnvironmentWithDomainName(title);
    VLRUserDefaults* defaults = m_services.defaults;
    // Other programs of the service keep their own keys in this domain.
    QVariantMap domain = defaults->persistentDomainForName(VLRUserDefaultsPersistentDomain).value_or(QVariantMap());
    domain.insert(VLRUserDefaultsKeyEnvironment, title);
    defaults->setPersistentDomain(domain, VLRUserDefaultsPersistentDomain);
}

void LoginViewController::controlTextDidBeginEditing(QLineEdit* field)
{
    if (PageStyle::backgroundColor(field) != QColor(Qt::white))
        setBackgroundColorForTextField(Qt::white, field);
}

void LoginViewController::responderViewFlagsChanged(VLRResponderView*, QKeyEvent* event)
{
    // Shown only while the whole chord is held; any other change hides it,
    // also when a script had shown it.
    if (m_environmentButton)
        m_environmentButton->setVisible((modifierFlags(event) & EnvironmentChord) == EnvironmentChord);
}

bool LoginViewController::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyRelease && m_view) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (modifierOfKey(key->key()) != Qt::NoModifier)
            responderViewFlagsChanged(m_view, key);
    }
    return QObject::eventFilter(watched, event);
}

void LoginViewController::showErrorMessage(const QString& message)
{
    if (!m_errorLabel)
        return;
    m_errorLabel->show();
    m_errorLabel->setText(message);
}

void LoginViewController::enableControls(bool enabled)
{
    for (QWidget* control : {static_cast<QWidget*>(m_signInButton), static_cast<QWidget*>(m_emailField),
                             static_cast<QWidget*>(m_passwordField)})
        if (control)
            control->setEnabled(enabled);
}

void LoginViewController::setBackgroundColorForTextField(const QColor& color, QLineEdit* field)
{
    if (!field)
        return;
    PageStyle::setBackgroundColor(field, color);
    // Taking the field out of editing and back makes it show the colour at
    // once, also while the user types in it.
    field->setReadOnly(true);
    field->setReadOnly(false);
}
