// Renders the sign-in pages offscreen to PNG files for people to look at.

#include "signin/SignInFixture.h"

#include "app/VLRUserDefaultsKeys.h"
#include "fakes/FakeLoginVerifier.h"
#include "fakes/FakeUser.h"
#include "preferences/PreferencesViewController.h"
#include "signin/LoginMfaViewController.h"
#include "signin/LoginViewController.h"
#include "widgets/VLRFonts.h"

#include <QComboBox>
#include <QDir>
#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTranslator>

namespace {

const QSize PageSize(360, 472);

class SignInScreenshotsTest : public SignInTest
{
protected:
    void SetUp() override
    {
        SignInTest::SetUp();
        VLRFonts::loadMuli();
        QDir().mkpath(QStringLiteral(VELURIA_SCREENSHOT_DIR));
    }

    static void save(QWidget* page, const QString& name)
    {
        page->resize(PageSize);
        page->show();
        QCoreApplication::processEvents();
        const QString path = QStringLiteral(VELURIA_SCREENSHOT_DIR "/signin-%1.png").arg(name);
        ASSERT_TRUE(page->grab().save(path)) << path.toStdString();
    }

    // The user's details have finished fading in or out.
    static void waitForDetails(PreferencesViewController& page, qreal alpha)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] {
            auto* effect = qobject_cast<QGraphicsOpacityEffect*>(page.emailField()->graphicsEffect());
            return effect && qFuzzyCompare(effect->opacity() + 1, alpha + 1);
        }));
        QTest::qWait(50);
    }

    static QStringList labelTexts(QWidget* page)
    {
        QStringList texts;
        for (const QLabel* label : page->findChildren<QLabel*>())
            texts.append(label->text());
        return texts;
    }

    RecordingSignInDelegate delegate;
};

} // namespace

TEST_F(SignInScreenshotsTest, LoginPage)
{
    LoginViewController page(services());
    page.setDelegate(&delegate);
    save(page.view(), QStringLiteral("login-empty"));

    page.emailField()->setText(QStringLiteral("ada@example.com"));
    page.passwordField()->setText(QStringLiteral("not-the-password"));
    page.signIn();
    service().signInHandlers.complete(nullptr, nullptr,
                                      vlr::Error{"VLRWebErrorDomain", 2, "The email or password is incorrect.", {}});
    save(page.view(), QStringLiteral("login-forgot-link"));

    page.passwordField()->clear();
    page.signIn();
    save(page.view(), QStringLiteral("login-error"));

    page.toggleEnvironmentPopUp();
    save(page.view(), QStringLiteral("login-environment"));
}

TEST_F(SignInScreenshotsTest, SecondFactorPage)
{
    LoginMfaViewController page;
    page.setDelegate(&delegate);
    auto verifier = std::make_shared<FakeLoginVerifier>();
    page.setLoginVerifier(verifier);
    page.view();
    page.mfaCodeField()->setText(QStringLiteral("123 456"));
    page.signIn();
    verifier->verifyHandlers.complete(nullptr,
                                      vlr::Error{"VLRWebErrorDomain", 4, "That code is not valid any more.", {}});
    save(page.view(), QStringLiteral("second-factor"));
}

TEST_F(SignInScreenshotsTest, PreferencesPage)
{
    delegate.launchesAtStartup = true;
    defaults()->setBool(true, VLRUserDefaultsKeyShowNotifications);
    defaults()->setBool(false, VLRUserDefaultsKeyAutoOpenAssets);
    defaults()->setBool(true, VLRUserDefaultsKeyLimitDownloadCacheSize);
    PreferencesViewController page(services());
    page.setDelegate(&delegate);
    page.view();
    waitForDetails(page, 0);
    save(page.view(), QStringLiteral("preferences-signed-out"));

    auto user = std::make_shared<FakeUser>();
    user->setFirstName(QStringLiteral("Ada"));
    user->setLastName(QStringLiteral("Lovelace"));
    user->setEmail(QStringLiteral("ada@example.com"));
    page.setLoggedIn(true);
    page.updateWithUser(user);
    page.updateDownloadCacheSize(2500000000);
    waitForDetails(page, 1);
    save(page.view(), QStringLiteral("preferences-signed-in"));

    auto nameless = std::make_shared<FakeUser>();
    nameless->setEmail(QStringLiteral("studio-42@example.com"));
    page.updateWithUser(nameless);
    waitForDetails(page, 1);
    save(page.view(), QStringLiteral("preferences-no-name"));
}

// The pages in German, whose texts run longer than the English ones.
TEST_F(SignInScreenshotsTest, PagesInGerman)
{
    QTranslator german;
    ASSERT_TRUE(german.load(QLocale(QLocale::German), QStringLiteral("veluria"), QStringLiteral("_"),
                            QStringLiteral(":/translations")));
    QCoreApplication::installTranslator(&german);
    {
        LoginViewController login(services());
        login.setDelegate(&delegate);
        EXPECT_TRUE(labelTexts(login.view()).contains("Bei Veluria anmelden"));
        EXPECT_EQ(login.emailField()->placeholderText(), "E-Mail-Adresse");
        login.signIn();
        EXPECT_EQ(login.errorLabel()->text(), "Geben Sie Ihre E-Mail-Adresse ein.");
        save(login.view(), QStringLiteral("login-german"));

        LoginMfaViewController mfa;
        mfa.setDelegate(&delegate);
        EXPECT_TRUE(labelTexts(mfa.view()).contains("Zweistufige Überprüfung"));
        save(mfa.view(), QStringLiteral("second-factor-german"));

        defaults()->setBool(true, VLRUserDefaultsKeyLimitDownloadCacheSize);
        PreferencesViewController preferences(services());
        preferences.setDelegate(&delegate);
        preferences.view();
        waitForDetails(preferences, 0);
        save(preferences.view(), QStringLiteral("preferences-german"));
    }
    QCoreApplication::removeTranslator(&german);

    LoginViewController login(services());
    EXPECT_TRUE(labelTexts(login.view()).contains("Sign in to Veluria"));
}
