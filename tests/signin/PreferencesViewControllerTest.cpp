#include "signin/SignInFixture.h"

#include "app/VLRUserDefaultsKeys.h"
#include "fakes/FakeUser.h"
#include "preferences/PreferencesViewController.h"
#include "widgets/VLRImageCatalogue.h"
#include "widgets/VLRViewAdditions.h"

#include <QCheckBox>
#include <QFile>
#include <QGraphicsOpacityEffect>
#include <QGuiApplication>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

namespace {

class PreferencesTest : public SignInTest
{
protected:
    void SetUp() override
    {
        SignInTest::SetUp();
        defaults()->setBool(true, VLRUserDefaultsKeyShowNotifications);
        defaults()->setBool(false, VLRUserDefaultsKeyAutoOpenAssets);
        defaults()->setBool(true, VLRUserDefaultsKeyLimitDownloadCacheSize);
    }

    std::unique_ptr<PreferencesViewController> makePage()
    {
        auto page = std::make_unique<PreferencesViewController>(services());
        page->setDelegate(&delegate);
        page->view()->resize(360, 472);
        page->view()->show();
        return page;
    }

    static QImage image(const QString& name)
    {
        return VLRImageCatalogue::imageNamed(name, VLRImageCatalogue::naturalSize(name), qApp->devicePixelRatio())
            .toImage();
    }

    static void typeAndLeave(QLineEdit* field, const QString& text)
    {
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Backspace);
        QTest::keyClicks(field, text);
        QTest::keyClick(field, Qt::Key_Return);
    }

    static qreal alpha(QWidget* view)
    {
        auto* effect = qobject_cast<QGraphicsOpacityEffect*>(view->graphicsEffect());
        return effect ? effect->opacity() : 1.0;
    }

    static std::shared_ptr<FakeUser> user(const QString& first, const QString& last, const QString& email)
    {
        auto u = std::make_shared<FakeUser>();
        u->setFirstName(first);
        u->setLastName(last);
        u->setEmail(email);
        return u;
    }

    RecordingSignInDelegate delegate;
};

} // namespace

TEST_F(PreferencesTest, ThePageOpensWithTheStoredSettingsAndTheCacheControlsLocked)
{
    delegate.launchesAtStartup = true;
    auto page = makePage();
    EXPECT_TRUE(page->showNotificationsCheckBox()->isChecked());
    EXPECT_TRUE(page->launchAtStartupCheckBox()->isChecked());
    EXPECT_FALSE(page->autoOpenCheckBox()->isChecked());
    EXPECT_EQ(page->showNotificationsCheckBox()->text(), "Show notifications");
    EXPECT_EQ(page->launchAtStartupCheckBox()->text(), "Launch Veluria at startup");
    EXPECT_EQ(page->autoOpenCheckBox()->text(), "Automatically open assets after downloading");
    EXPECT_EQ(page->downloadCacheSizeCheckBox()->text(), "Limit download cache size to:");
    // The stored limit waits for a size from the session.
    EXPECT_FALSE(page->downloadCacheSizeCheckBox()->isEnabled());
    EXPECT_FALSE(page->downloadCacheSizeCheckBox()->isChecked());
    EXPECT_FALSE(page->downloadCacheSizeField()->isEnabled());
    EXPECT_FALSE(page->downloadCacheSizeStepper()->isEnabled());
    EXPECT_EQ(page->downloadCacheSizeField()->focusPolicy(), Qt::ClickFocus);
    EXPECT_EQ(page->versionLabel()->stringValue(), "Version: 2.0.0");
    EXPECT_FALSE(page->loggedIn());
    EXPECT_EQ(page->loginLogoutButton()->defaultImage().toImage(), image("preferences_log_in_inactive"));
    EXPECT_EQ(page->loginLogoutButton()->mouseOverImage().toImage(), image("preferences_log_in_active"));
    EXPECT_EQ(page->uninstallButton()->mouseOverImage().toImage(), image("preferences_uninstall_mouseover"));
    EXPECT_EQ(page->helpButton()->clickedImage().toImage(), image("preferences_help_active"));
    EXPECT_EQ(page->quitButton()->defaultImage().toImage(), image("preferences_quit_inactive"));
    EXPECT_EQ(page->avatarView()->cornerRadius(), page->avatarView()->width() / 2.0);

    // Ticks go straight to the settings.
    page->showNotificationsCheckBox()->click();
    page->autoOpenCheckBox()->click();
    EXPECT_FALSE(defaults()->boolForKey(VLRUserDefaultsKeyShowNotifications));
    EXPECT_TRUE(defaults()->boolForKey(VLRUserDefaultsKeyAutoOpenAssets));
}

TEST_F(PreferencesTest, TheStartupBoxAlwaysShowsWhatTheLoginItemsHold)
{
    auto page = makePage();
    delegate.calls.clear();
    page->launchAtStartupCheckBox()->click();
    EXPECT_EQ(
        delegate.calls,
        (QStringList{"willVeluriaLaunchAtStartup", "wantsVeluriaLaunchedAtStartup 1", "willVeluriaLaunchAtStartup"}));
    EXPECT_TRUE(page->launchAtStartupCheckBox()->isChecked());

    // A change that fails leaves the box as the list stands.
    delegate.startupChangeWorks = false;
    page->launchAtStartupCheckBox()->click();
    EXPECT_TRUE(page->launchAtStartupCheckBox()->isChecked());
    EXPECT_TRUE(delegate.calls.contains("wantsVeluriaLaunchedAtStartup 0"));
}

TEST_F(PreferencesTest, TheCacheFieldAndStepperKeepToTheFloorOfAHundredMegabytes)
{
    auto page = makePage();
    QLineEdit* field = page->downloadCacheSizeField();
    Stepper* stepper = page->downloadCacheSizeStepper();

    // Just under 251 megabytes shows as 250; the stored limit applies now.
    page->updateDownloadCacheSize(250999999);
    EXPECT_EQ(field->text(), "250");
    EXPECT_EQ(stepper->integerValue(), 250);
    EXPECT_TRUE(page->downloadCacheSizeCheckBox()->isEnabled());
    EXPECT_TRUE(page->downloadCacheSizeCheckBox()->isChecked());
    EXPECT_TRUE(field->isEnabled());
    EXPECT_TRUE(stepper->isEnabled());

    // Below the floor the stepper waits; leaving stores its value again.
    field->setFocus();
    typeAndLeave(field, QStringLiteral("99"));
    EXPECT_EQ(field->text(), "250");
    EXPECT_EQ(delegate.cacheSizes, QList<qint64>{250000000});

    // A valid number moves the stepper as it is typed.
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Backspace);
    QTest::keyClicks(field, QStringLiteral("150"));
    EXPECT_EQ(stepper->integerValue(), 150);
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(delegate.cacheSizes.last(), 150000000);

    // Text that is no number counts as 0 and falls back.
    typeAndLeave(field, QStringLiteral("lots"));
    EXPECT_EQ(field->text(), "150");
    EXPECT_EQ(delegate.cacheSizes.last(), 150000000);
    typeAndLeave(field, QStringLiteral("-5"));
    EXPECT_EQ(field->text(), "100");
    EXPECT_EQ(delegate.cacheSizes.last(), 100000000);

    // The stepper's arrows step and store at once.
    QTest::mouseClick(stepper, Qt::LeftButton, Qt::NoModifier, QPoint(stepper->width() / 2, 3));
    EXPECT_EQ(field->text(), QString::number(100 + stepper->increment()));
    EXPECT_EQ(delegate.cacheSizes.last(), (100 + stepper->increment()) * 1000000);

    // A size below the floor from the session: leaving the field shows and
    // stores the floor.
    page->updateDownloadCacheSize(50000000);
    EXPECT_EQ(field->text(), "50");
    typeAndLeave(field, QStringLiteral("50"));
    EXPECT_EQ(field->text(), "100");
    EXPECT_EQ(delegate.cacheSizes.last(), 100000000);

    // Unticking locks the controls and keeps the session's limit.
    const qsizetype stored = delegate.cacheSizes.size();
    page->downloadCacheSizeCheckBox()->click();
    EXPECT_FALSE(field->isEnabled());
    EXPECT_FALSE(stepper->isEnabled());
    EXPECT_FALSE(defaults()->boolForKey(VLRUserDefaultsKeyLimitDownloadCacheSize));
    EXPECT_EQ(delegate.cacheSizes.size(), stored);
    EXPECT_EQ(field->text(), "100");
}

TEST_F(PreferencesTest, TheUserIsShownByTheNameRulesWithALivePortrait)
{
    auto page = makePage();
    auto ada = user("Ada", "Lovelace", "ada@example.com");
    page->setLoggedIn(true);
    page->updateWithUser(ada);
    EXPECT_EQ(page->nameField()->stringValue(), "Ada Lovelace");
    EXPECT_EQ(page->emailField()->stringValue(), "ada@example.com");
    EXPECT_EQ(page->emailField()->attributedStringValue().font.pixelSize(), 12);
    EXPECT_EQ(page->loginLogoutButton()->defaultImage().toImage(), image("preferences_log_out_inactive"));
    EXPECT_EQ(page->avatarView()->image().toImage(), image("blankAvatar"));
    EXPECT_EQ(ada->observationCount("avatar"), 1);

    QImage portrait(32, 32, QImage::Format_ARGB32);
    portrait.fill(Qt::darkCyan);
    ada->setAvatar(portrait);
    EXPECT_EQ(page->avatarView()->image().toImage().convertToFormat(QImage::Format_ARGB32), portrait);

    const int constraints = int(vlr_constraints(page->userInfoView()).size());
    auto lastOnly = user(QString(), "Byron", "byron@example.com");
    page->updateWithUser(lastOnly);
    EXPECT_EQ(ada->observationCount("avatar"), 0);
    EXPECT_EQ(lastOnly->observationCount("avatar"), 1);
    EXPECT_EQ(page->nameField()->stringValue(), "Byron");
    EXPECT_EQ(page->avatarView()->image().toImage(), image("blankAvatar"));
    // Shown twice, the details add no second constraint.
    EXPECT_EQ(vlr_constraints(page->userInfoView()).size(), constraints);
    page->updateWithUser(user("Grace", QString(), "grace@example.com"));
    EXPECT_EQ(page->nameField()->stringValue(), "Grace");

    auto nameless = user(QString(), QString(), "studio@example.com");
    page->updateWithUser(nameless);
    EXPECT_TRUE(page->nameField()->isHidden());
    EXPECT_EQ(page->emailField()->attributedStringValue().font.pixelSize(), 13);
    const QList<VLRLayoutConstraint> list = vlr_constraints(page->userInfoView());
    const bool centred = std::any_of(list.begin(), list.end(), [&](const VLRLayoutConstraint& c) {
        return c.firstItem == page->emailField() && c.firstAttribute == VLRLayoutAttributeCenterY
            && c.secondItem == page->avatarView() && c.constant == -3;
    });
    EXPECT_TRUE(centred);
    EXPECT_EQ(page->emailField()->geometry().center().y(), page->avatarView()->geometry().center().y() - 3);

    // Signed out: nothing shown, the button back in the middle.
    page->setLoggedIn(false);
    page->updateWithUser(nullptr);
    EXPECT_EQ(nameless->observationCount("avatar"), 0);
    EXPECT_EQ(page->nameField()->stringValue(), "");
    EXPECT_EQ(page->emailField()->stringValue(), "");
    EXPECT_EQ(page->avatarView()->image().toImage(), image("blankAvatar"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return alpha(page->emailField()) == 0.0; }));
    EXPECT_EQ(alpha(page->avatarView()), 0.0);
    EXPECT_EQ(alpha(page->nameField()), 0.0);
    const QWidget* button = page->loginLogoutButton();
    EXPECT_EQ(button->geometry().center().x(), page->userInfoView()->rect().center().x());
    EXPECT_EQ(page->loginLogoutButton()->defaultImage().toImage(), image("preferences_log_in_inactive"));
}

TEST_F(PreferencesTest, TheButtonsAskTheDelegateAndTheUninstallerRunsOnItsOwn)
{
    auto page = makePage();
    page->loginLogoutButton()->click();
    page->setLoggedIn(true);
    page->loginLogoutButton()->click();
    page->helpButton()->click();
    page->quitButton()->click();
    EXPECT_EQ(delegate.calls.mid(delegate.calls.indexOf("wantsLogIn")),
              (QStringList{"wantsLogIn", "wantsLogOut", "wantsHelp", "wantsQuit"}));

    const QByteArray path = qgetenv("PATH");
    QTemporaryDir bin;
    qputenv("PATH", bin.path().toUtf8());
    // Not installed: nothing happens.
    page->uninstallButton()->click();

    const QString marker = bin.filePath("ran");
    QFile script(bin.filePath("veluria-uninstall"));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write(QStringLiteral("#!/bin/sh\n/usr/bin/touch '%1'\n").arg(marker).toUtf8());
    script.close();
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    page->uninstallButton()->click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(marker); }));
    qputenv("PATH", path);
}
