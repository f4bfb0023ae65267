#include "signin/SignInFixture.h"

#include "app/AppFlavor.h"
#include "app/VLRUserDefaultsKeys.h"
#include "fakes/FakeLoginVerifier.h"
#include "fakes/FakeUserSession.h"
#include "pages/RecordingPages.h"
#include "session/MainViewController.h"
#include "signin/LoginViewController.h"
#include "widgets/PageStyle.h"
#include "widgets/StatusItemImageView.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QStackedWidget>
#include <QTest>

namespace {

class LoginTest : public SignInTest
{
protected:
    // A page whose view is built, which starts any silent sign-in.
    std::unique_ptr<LoginViewController> makePage()
    {
        auto page = std::make_unique<LoginViewController>(services());
        page->setDelegate(&delegate);
        page->view();
        return page;
    }

    void storeCredentials(const QString& email, const QString& password)
    {
        defaults()->setObject(email, VLRUserDefaultsKeyEmail);
        service().storedPassword = password;
    }

    static void type(QLineEdit* field, const QString& text)
    {
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Backspace);
        QTest::keyClicks(field, text);
    }

    static void signInAs(LoginViewController* page, const QString& email, const QString& password)
    {
        type(page->emailField(), email);
        type(page->passwordField(), password);
        page->signIn();
    }

    RecordingSignInDelegate delegate;
};

} // namespace

TEST_F(LoginTest, ASilentSignInFromAColdStartEndsInABoundSession)
{
    storeCredentials(QStringLiteral("ada@example.com"), QStringLiteral(" s3cret "));
    defaults()->setPersistentDomain({{VLRUserDefaultsKeyEnvironment, "veluria.com"}, {"other", 7}},
                                    VLRUserDefaultsPersistentDomain);

    // The real page inside the main controller, as the program starts it.
    PageJournal journal;
    RecordingParts recording(&journal);
    RecordingApplication application(&journal);
    StatusItemImageView statusView(QRect(0, 0, 24, 24), true);
    application.statusView = &statusView;
    MainViewControllerParts parts = recording.take();
    auto login = std::make_unique<LoginViewController>(services());
    LoginViewController* page = login.get();
    parts.loginViewController = std::move(login);
    MainViewController main(std::move(parts), &application, services());
    main.loadView();

    ASSERT_EQ(service().signIns.size(), 1);
    const FakeService::SignIn signIn = service().signIns.first();
    EXPECT_EQ(signIn.email, "ada@example.com");
    EXPECT_EQ(signIn.password, " s3cret ");
    EXPECT_EQ(signIn.apiKey, "lumenra-courier-token");
    EXPECT_EQ(signIn.supportsMarketplace, AppFlavor::supportsMarketplace());
    EXPECT_EQ(service().log.lastArguments("setEnvironmentWithDomainName"), QVariantList{"veluria.com"});
    EXPECT_EQ(page->environmentButton()->currentText(), "veluria.com");
    EXPECT_FALSE(page->signInButton()->isEnabled());
    EXPECT_FALSE(page->emailField()->isEnabled());
    EXPECT_FALSE(page->passwordField()->isEnabled());

    auto session = FakeUserSession::make();
    service().signInHandlers.complete(session, nullptr, std::nullopt);
    EXPECT_EQ(main.userSession(), session);
    EXPECT_TRUE(page->signInButton()->isEnabled());
    EXPECT_TRUE(page->errorLabel()->isHidden());
    EXPECT_EQ(defaults()->stringForKey(VLRUserDefaultsKeyEmail), "ada@example.com");
    EXPECT_EQ(service().storedPassword, " s3cret ");
    EXPECT_EQ(defaults()->persistentDomainForName(VLRUserDefaultsPersistentDomain)->value("other"), QVariant(7));
}

TEST_F(LoginTest, WithoutAStoredPasswordOrAddressTheSilentSignInWaitsWithoutASign)
{
    storeCredentials(QStringLiteral("ada@example.com"), QString());
    auto page = makePage();
    EXPECT_EQ(page->emailField()->text(), "ada@example.com");
    EXPECT_EQ(page->passwordField()->text(), "");
    EXPECT_TRUE(service().signIns.isEmpty());

    // A password but no address: the sign-in stops before the library.
    service().reset();
    defaults()->removeObjectForKey(VLRUserDefaultsKeyEmail);
    service().storedPassword = QStringLiteral("s3cret");
    auto second = makePage();
    EXPECT_EQ(second->passwordField()->text(), "s3cret");
    EXPECT_TRUE(service().signIns.isEmpty());
    EXPECT_TRUE(second->errorLabel()->isHidden());
    EXPECT_EQ(PageStyle::backgroundColor(second->emailField()), QColor(Qt::white));
    EXPECT_TRUE(second->signInButton()->isEnabled());
    EXPECT_TRUE(delegate.calls.isEmpty());
}

TEST_F(LoginTest, ATypedSignInAsksForWhatIsMissingAndSendsTheAddressTrimmed)
{
    auto page = makePage();
    signInAs(page.get(), QStringLiteral(" \t  "), QStringLiteral("s3cret"));
    EXPECT_TRUE(service().signIns.isEmpty());
    EXPECT_EQ(PageStyle::backgroundColor(page->emailField()), AppFlavor::errorColor());
    EXPECT_TRUE(page->errorLabel()->isVisibleTo(page->view()));
    EXPECT_EQ(page->errorLabel()->text(), "Enter your email.");

    // Typing whitens the field; the error line stays until the next attempt.
    type(page->emailField(), QStringLiteral("  ada@example.com "));
    EXPECT_EQ(PageStyle::backgroundColor(page->emailField()), QColor(Qt::white));
    EXPECT_EQ(page->errorLabel()->text(), "Enter your email.");

    type(page->passwordField(), QString());
    page->signIn();
    EXPECT_TRUE(service().signIns.isEmpty());
    EXPECT_EQ(PageStyle::backgroundColor(page->passwordField()), AppFlavor::errorColor());
    EXPECT_EQ(page->errorLabel()->text(), "Enter your password.");

    // A password of blanks is a password; Return in a field signs in.
    type(page->passwordField(), QStringLiteral("   "));
    EXPECT_EQ(PageStyle::backgroundColor(page->passwordField()), QColor(Qt::white));
    QTest::keyClick(page->passwordField(), Qt::Key_Return);
    ASSERT_EQ(service().signIns.size(), 1);
    EXPECT_EQ(service().signIns.first().email, "ada@example.com");
    EXPECT_EQ(service().signIns.first().password, "   ");
    EXPECT_TRUE(page->errorLabel()->isHidden());
    EXPECT_FALSE(page->signInButton()->isEnabled());
    // The selector was never shown, yet its choice is applied and stored.
    EXPECT_EQ(service().log.lastArguments("setEnvironmentWithDomainName"), QVariantList{"localhost"});
    EXPECT_EQ(
        defaults()->persistentDomainForName(VLRUserDefaultsPersistentDomain)->value(VLRUserDefaultsKeyEnvironment),
        QVariant("localhost"));
}

TEST_F(LoginTest, AFailedSignInIsToldAsItsErrorSays)
{
    struct Case
    {
        vlr::Error error;
        bool forgotLink;
        QStringList delegateCalls;
        QString text;
    };
    const QList<Case> cases = {
        {{"VLRWebErrorDomain", 2, "Wrong email or password.", {}}, true, {}, "Wrong email or password."},
        {{"SomewhereElse", 2, "Try again.", {}}, true, {}, "Try again."},
        {{"VLRWebErrorDomain", 6, "This version is no longer supported.", {}},
         false,
         {"currentVersionIsUnsupported"},
         "This version is no longer supported."},
        {{"SomewhereElse", 6, "Six, but elsewhere.", {}}, false, {}, "Six, but elsewhere."},
        {{"NSURLErrorDomain", -1009, "The Internet connection appears to be offline.", {}},
         false,
         {},
         "The Internet connection appears to be offline."},
        // Markup from the service is shown as the text it is.
        {{"X", 9, "<b>bold</b> & more", {}}, false, {}, "<b>bold</b> & more"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text.toStdString());
        service().reset();
        delegate.calls.clear();
        auto page = makePage();
        signInAs(page.get(), QStringLiteral("ada@example.com"), QStringLiteral("wrong"));
        service().signInHandlers.complete(nullptr, nullptr, c.error);
        EXPECT_EQ(page->forgotPasswordButton()->isVisibleTo(page->view()), c.forgotLink);
        EXPECT_EQ(delegate.calls, c.delegateCalls);
        EXPECT_EQ(page->errorLabel()->text(), c.text);
        EXPECT_EQ(page->errorLabel()->textFormat(), Qt::PlainText);
        EXPECT_TRUE(page->errorLabel()->isVisibleTo(page->view()));
        EXPECT_TRUE(page->signInButton()->isEnabled());
        EXPECT_FALSE(service().log.names().contains("savePassword"));
    }

    // Without a description nothing is shown, whatever the code.
    service().reset();
    auto page = makePage();
    signInAs(page.get(), QStringLiteral("ada@example.com"), QStringLiteral("wrong"));
    page->errorLabel()->setText(QStringLiteral("untouched"));
    service().signInHandlers.complete(nullptr, nullptr, vlr::Error{"VLRWebErrorDomain", 2, QString(), {}});
    EXPECT_EQ(page->errorLabel()->text(), "untouched");
    EXPECT_FALSE(page->forgotPasswordButton()->isVisibleTo(page->view()));
}

TEST_F(LoginTest, ASilentSignInThatFailsOrNeedsASecondFactorLeavesNoTrace)
{
    storeCredentials(QStringLiteral("ada@example.com"), QStringLiteral("s3cret"));
    auto page = makePage();
    service().signInHandlers.complete(nullptr, nullptr, vlr::Error{"VLRWebErrorDomain", 6, "Unsupported.", {}});
    EXPECT_TRUE(delegate.calls.isEmpty());
    EXPECT_TRUE(page->errorLabel()->isHidden());
    EXPECT_FALSE(page->forgotPasswordButton()->isVisibleTo(page->view()));
    EXPECT_TRUE(page->signInButton()->isEnabled());
    EXPECT_EQ(page->emailField()->text(), "ada@example.com");
    EXPECT_EQ(page->passwordField()->text(), "s3cret");

    // A second factor at start: stored, but the page just waits, filled.
    service().reset();
    service().storedPassword = QStringLiteral("s3cret");
    defaults()->setObject(QStringLiteral(" ada@example.com "), VLRUserDefaultsKeyEmail);
    auto second = makePage();
    ASSERT_EQ(service().signInHandlers.count(), 1);
    service().signInHandlers.complete(nullptr, std::make_shared<FakeLoginVerifier>(), std::nullopt);
    EXPECT_TRUE(delegate.calls.isEmpty());
    EXPECT_EQ(defaults()->stringForKey(VLRUserDefaultsKeyEmail), "ada@example.com");
    EXPECT_EQ(service().storedPassword, "s3cret");
    EXPECT_TRUE(second->errorLabel()->isHidden());
    EXPECT_TRUE(second->signInButton()->isEnabled());
}

TEST_F(LoginTest, ASuccessStoresAddressAndPasswordBeforeTheSecondFactorAndHidesTheLink)
{
    auto page = makePage();
    signInAs(page.get(), QStringLiteral("ada@example.com"), QStringLiteral("wrong"));
    service().signInHandlers.complete(nullptr, nullptr, vlr::Error{"VLRWebErrorDomain", 2, "Wrong.", {}});
    ASSERT_TRUE(page->forgotPasswordButton()->isVisibleTo(page->view()));

    type(page->passwordField(), QStringLiteral("right "));
    page->signIn();
    auto verifier = std::make_shared<FakeLoginVerifier>();
    service().signInHandlers.complete(nullptr, verifier, std::nullopt);
    EXPECT_EQ(delegate.calls, QStringList{"loginWithVerifier"});
    EXPECT_EQ(delegate.verifier, verifier);
    EXPECT_EQ(service().storedPassword, "right ");
    EXPECT_EQ(defaults()->stringForKey(VLRUserDefaultsKeyEmail), "ada@example.com");
    EXPECT_FALSE(page->forgotPasswordButton()->isVisibleTo(page->view()));

    // Without a second factor the session goes to the delegate as it is.
    page->signIn();
    auto session = FakeUserSession::make();
    service().signInHandlers.complete(session, nullptr, std::nullopt);
    EXPECT_EQ(delegate.calls.last(), "didLoginWithSession");
    EXPECT_EQ(delegate.session, session);
}

TEST_F(LoginTest, ASignOutForgetsThePasswordAndTheLinkOpensTheResetPage)
{
    storeCredentials(QStringLiteral("ada@example.com"), QStringLiteral("s3cret"));
    auto page = makePage();
    service().signInHandlers.complete(FakeUserSession::make(), nullptr, std::nullopt);
    page->clearPassword();
    EXPECT_TRUE(service().storedPassword.isNull());
    EXPECT_EQ(service().log.count("deletePassword"), 1);
    EXPECT_EQ(page->passwordField()->text(), "");
    EXPECT_EQ(page->emailField()->text(), "ada@example.com");

    page->forgotPasswordButton()->click();
    EXPECT_EQ(desktop->openedURLs(), QList<QUrl>{service().resetPasswordURL});

    // Before its view exists the page has no fields to touch.
    LoginViewController unbuilt(services());
    unbuilt.clearPassword();
    unbuilt.toggleEnvironmentPopUp();
    unbuilt.signInBypassUI(false);
    EXPECT_EQ(service().signIns.size(), 1);
}

TEST_F(LoginTest, TheEnvironmentSelectorShowsOnlyWhileTheChordIsHeld)
{
    auto page = makePage();
    QLineEdit* field = page->emailField();
    QComboBox* selector = page->environmentButton();
    ASSERT_TRUE(selector->isHidden());

    QTest::keyPress(field, Qt::Key_Control, Qt::NoModifier);
    QTest::keyPress(field, Qt::Key_Alt, Qt::ControlModifier);
    EXPECT_TRUE(selector->isHidden());
    QTest::keyPress(field, Qt::Key_Super_L, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_FALSE(selector->isHidden());
    // Releasing any one of the three hides it.
    QTest::keyRelease(field, Qt::Key_Alt, Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    EXPECT_TRUE(selector->isHidden());

    // A script shows it; the next change of the modifiers hides it again.
    page->toggleEnvironmentPopUp();
    EXPECT_FALSE(selector->isHidden());
    QTest::keyPress(field, Qt::Key_Shift, Qt::NoModifier);
    EXPECT_TRUE(selector->isHidden());
    page->toggleEnvironmentPopUp();
    page->toggleEnvironmentPopUp();
    EXPECT_TRUE(selector->isHidden());

    // A choice among the library's domain names is applied and stored beside
    // the other keys of the domain.
    service().domainNames = {"localhost", "team.example.org"};
    auto offered = makePage();
    QComboBox* servers = offered->environmentButton();
    ASSERT_EQ(servers->count(), 2);
    defaults()->setPersistentDomain({{"other", "kept"}}, VLRUserDefaultsPersistentDomain);
    servers->setCurrentIndex(1);
    emit servers->activated(1);
    EXPECT_EQ(service().log.lastArguments("setEnvironmentWithDomainName"), QVariantList{"team.example.org"});
    const QVariantMap domain = *defaults()->persistentDomainForName(VLRUserDefaultsPersistentDomain);
    EXPECT_EQ(domain.value(VLRUserDefaultsKeyEnvironment), QVariant("team.example.org"));
    EXPECT_EQ(domain.value("other"), QVariant("kept"));
}

TEST_F(LoginTest, AStoredEnvironmentThatNoItemCarriesSelectsNothingAndIsNeverApplied)
{
    defaults()->setPersistentDomain({{VLRUserDefaultsKeyEnvironment, "gone.example"}}, VLRUserDefaultsPersistentDomain);
    auto page = makePage();
    EXPECT_EQ(page->environmentButton()->currentIndex(), -1);
    signInAs(page.get(), QStringLiteral("ada@example.com"), QStringLiteral("s3cret"));
    EXPECT_EQ(service().signIns.size(), 1);
    EXPECT_EQ(service().log.count("setEnvironmentWithDomainName"), 0);
    EXPECT_EQ(
        defaults()->persistentDomainForName(VLRUserDefaultsPersistentDomain)->value(VLRUserDefaultsKeyEnvironment),
        QVariant("gone.example"));
}
