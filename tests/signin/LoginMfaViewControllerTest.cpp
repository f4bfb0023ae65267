#include "signin/SignInFixture.h"

#include "app/AppFlavor.h"
#include "fakes/FakeLoginVerifier.h"
#include "fakes/FakeUserSession.h"
#include "signin/LoginMfaViewController.h"
#include "widgets/PageStyle.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>

namespace {

class SecondFactorTest : public SignInTest
{
protected:
    void SetUp() override
    {
        SignInTest::SetUp();
        page.setDelegate(&delegate);
        page.view();
        page.setLoginVerifier(verifier);
    }

    void typeCode(const QString& code)
    {
        page.mfaCodeField()->clear();
        QTest::keyClicks(page.mfaCodeField(), code);
    }

    bool cancelShown() { return page.cancelButton()->isVisibleTo(page.view()); }

    RecordingSignInDelegate delegate;
    std::shared_ptr<FakeLoginVerifier> verifier = std::make_shared<FakeLoginVerifier>();
    LoginMfaViewController page;
};

} // namespace

TEST_F(SecondFactorTest, AWrongCodeLeavesCodeAndVerifierForAnotherTry)
{
    typeCode(QStringLiteral(" 12 34 "));
    page.signIn();
    EXPECT_EQ(verifier->log.lastArguments("verifyLoginWithCode"),
              (QVariantList{" 12 34 ", AppFlavor::supportsMarketplace()}));
    // While the code is checked nothing can be changed or cancelled.
    EXPECT_FALSE(page.signInButton()->isEnabled());
    EXPECT_FALSE(page.mfaCodeField()->isEnabled());
    EXPECT_FALSE(page.cancelButton()->isEnabled());
    EXPECT_FALSE(cancelShown());
    EXPECT_TRUE(page.errorLabel()->isVisibleTo(page.view()));
    EXPECT_EQ(page.errorLabel()->text(), "");

    verifier->verifyHandlers.complete(nullptr, vlr::Error{"VLRWebErrorDomain", 4, "That code is not valid.", {}});
    EXPECT_EQ(page.errorLabel()->text(), "That code is not valid.");
    EXPECT_EQ(page.mfaCodeField()->text(), " 12 34 ");
    EXPECT_EQ(page.loginVerifier(), verifier);
    EXPECT_TRUE(page.signInButton()->isEnabled());
    EXPECT_TRUE(cancelShown());
    EXPECT_TRUE(delegate.calls.isEmpty());

    // The next attempt clears the text first; an empty code goes as it is.
    typeCode(QString());
    QTest::keyClick(page.mfaCodeField(), Qt::Key_Return);
    EXPECT_EQ(page.errorLabel()->text(), "");
    EXPECT_EQ(verifier->log.lastArguments("verifyLoginWithCode").value(0), QVariant(""));
}

TEST_F(SecondFactorTest, AnAcceptedCodeHandsTheSessionOverAndClearsThePage)
{
    typeCode(QStringLiteral("123456"));
    page.signIn();
    auto session = FakeUserSession::make();
    verifier->verifyHandlers.complete(session, std::nullopt);
    EXPECT_EQ(delegate.calls, QStringList{"mfa.didLoginWithSession"});
    EXPECT_EQ(delegate.session, session);
    EXPECT_EQ(page.mfaCodeField()->text(), "");
    EXPECT_EQ(page.loginVerifier(), nullptr);
    EXPECT_EQ(page.errorLabel()->text(), "");
    EXPECT_TRUE(page.mfaCodeField()->isEnabled());

    // An error without a description counts as success, with whatever
    // session came with it.
    auto second = std::make_shared<FakeLoginVerifier>();
    page.setLoginVerifier(second);
    page.signIn();
    second->verifyHandlers.complete(nullptr, vlr::Error{"VLRWebErrorDomain", 4, QString(), {}});
    EXPECT_EQ(delegate.calls.last(), "mfa.didLoginWithSession");
    EXPECT_EQ(delegate.session, nullptr);
    EXPECT_EQ(page.loginVerifier(), nullptr);
}

TEST_F(SecondFactorTest, CancelEmptiesThePageAndDropsTheHoverLook)
{
    typeCode(QStringLiteral("999"));
    page.signIn();
    verifier->verifyHandlers.complete(nullptr, vlr::Error{"VLRWebErrorDomain", 4, "Wrong.", {}});

    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(page.cancelButton(), &enter);
    ASSERT_TRUE(page.cancelButton()->layer());
    ASSERT_NE(page.cancelButton()->layer()->backgroundColor.alpha(), 0);

    // The delegate hears of it with the code and the verifier gone, the
    // error line still there.
    const QString errorShown = page.errorLabel()->text();
    ASSERT_FALSE(errorShown.isEmpty());
    delegate.onCancelMfa = [this, errorShown] {
        EXPECT_EQ(page.mfaCodeField()->text(), "");
        EXPECT_EQ(page.loginVerifier(), nullptr);
        EXPECT_EQ(page.errorLabel()->text(), errorShown);
    };
    page.cancelButton()->click();
    EXPECT_EQ(delegate.calls, QStringList{"cancelMfa"});
    EXPECT_EQ(page.mfaCodeField()->text(), "");
    EXPECT_EQ(page.loginVerifier(), nullptr);
    EXPECT_EQ(page.errorLabel()->text(), "");
    EXPECT_EQ(page.cancelButton()->layer()->backgroundColor.alpha(), 0);

    // A field painted by anyone turns white again when the user next types
    // in it.
    QFocusEvent focusLeft(QEvent::FocusOut);
    QCoreApplication::sendEvent(page.mfaCodeField(), &focusLeft);
    PageStyle::setBackgroundColor(page.mfaCodeField(), AppFlavor::errorColor());
    QTest::keyClicks(page.mfaCodeField(), QStringLiteral("1"));
    EXPECT_EQ(PageStyle::backgroundColor(page.mfaCodeField()), QColor(Qt::white));
}
