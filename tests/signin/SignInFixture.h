#pragma once

#include "fakes/FakeService.h"
#include "fakes/RecordingDesktopServices.h"
#include "platform/VLRDesktopServices.h"
#include "platform/VLRUserDefaults.h"
#include "signin/LoginMfaViewControllerDelegate.h"
#include "signin/LoginViewControllerDelegate.h"
#include "preferences/PreferencesViewControllerDelegate.h"

#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// Settings in a temporary folder, a recording desktop and a fresh test double
// of the service, for each test of the sign-in pages.
class SignInTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        FakeService::reset();
        VLRUserDefaults::setStorageDirectory(settingsFolder.path());
        VLRUserDefaults::resetStandardUserDefaults();
        desktop = std::make_shared<RecordingDesktopServices>();
        VLRDesktopServices::setSharedDesktopServices(desktop);
    }

    void TearDown() override
    {
        VLRDesktopServices::setSharedDesktopServices(nullptr);
        VLRUserDefaults::resetStandardUserDefaults();
        VLRUserDefaults::setStorageDirectory(QString());
    }

    VLRUserDefaults* defaults() { return VLRUserDefaults::standardUserDefaults(); }
    FakeService& service() { return FakeService::instance(); }

    QTemporaryDir settingsFolder;
    std::shared_ptr<RecordingDesktopServices> desktop;
};

// Every delegate of the three pages, writing what it is told into one list,
// e.g. "didLoginWithSession bypassed" or "wantsVeluriaLaunchedAtStartup 1".
class RecordingSignInDelegate : public LoginViewControllerDelegate,
                                public LoginMfaViewControllerDelegate,
                                public PreferencesViewControllerDelegate
{
public:
    QStringList calls;
    VLRUserSessionPtr session;
    VLRLoginVerifierPtr verifier;
    QList<qint64> cacheSizes;
    // What the login items hold, and whether a change goes through.
    bool launchesAtStartup = false;
    bool startupChangeWorks = true;

    void didLoginWithSession(const VLRUserSessionPtr& s, bool bypassedUI) override
    {
        session = s;
        calls.append(bypassedUI ? QStringLiteral("didLoginWithSession bypassed") : QStringLiteral("didLoginWithSession"));
    }
    void loginWithVerifier(const VLRLoginVerifierPtr& v) override
    {
        verifier = v;
        calls.append(QStringLiteral("loginWithVerifier"));
    }
    void currentVersionIsUnsupported() override { calls.append(QStringLiteral("currentVersionIsUnsupported")); }

    void didLoginWithSession(const VLRUserSessionPtr& s) override
    {
        session = s;
        calls.append(QStringLiteral("mfa.didLoginWithSession"));
    }
    void cancelMfa(LoginMfaPage*) override { calls.append(QStringLiteral("cancelMfa")); }

    bool willVeluriaLaunchAtStartup() override
    {
        calls.append(QStringLiteral("willVeluriaLaunchAtStartup"));
        return launchesAtStartup;
    }
    bool preferencesViewControllerWantsVeluriaLaunchedAtStartup(PreferencesPage*, bool launch) override
    {
        calls.append(QStringLiteral("wantsVeluriaLaunchedAtStartup %1").arg(launch));
        if (startupChangeWorks)
            launchesAtStartup = launch;
        return startupChangeWorks;
    }
    void preferencesViewControllerDidSetDownloadCacheSize(PreferencesPage*, qint64 bytes) override
    {
        cacheSizes.append(bytes);
    }
    void preferencesViewControllerDidModifyArchiveMode(PreferencesPage*, bool) override
    {
        calls.append(QStringLiteral("didModifyArchiveMode"));
    }
    void preferencesViewControllerWantsLogIn(PreferencesPage*) override { calls.append(QStringLiteral("wantsLogIn")); }
    void preferencesViewControllerWantsLogOut(PreferencesPage*) override { calls.append(QStringLiteral("wantsLogOut")); }
    void preferencesViewControllerWantsHelp(PreferencesPage*) override { calls.append(QStringLiteral("wantsHelp")); }
    void preferencesViewControllerWantsQuit(PreferencesPage*) override { calls.append(QStringLiteral("wantsQuit")); }
};
