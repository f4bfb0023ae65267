#pragma once

#include "fakes/FakeClientServices.h"
#include "preferences/PreferencesViewControllerDelegate.h"
#include "signin/LoginMfaViewControllerDelegate.h"
#include "signin/LoginViewControllerDelegate.h"

#include <QStringList>
#include <QTemporaryDir>

#include <functional>

#include <gtest/gtest.h>

// Settings in a temporary folder, a recording desktop and a fresh test double
// of the service, for each test of the sign-in pages.
class SignInTest : public ::testing::Test
{
protected:
    VLRUserDefaults* defaults() { return fakes.defaults.get(); }
    FakeService& service() { return fakes.library; }
    ClientServices services() { return fakes.services(); }

    QTemporaryDir settingsFolder;
    FakeClientServices fakes{settingsFolder.path()};
    std::shared_ptr<RecordingDesktopServices> desktop = fakes.desktop;
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
        calls.append(bypassedUI ? QStringLiteral("didLoginWithSession bypassed")
                                : QStringLiteral("didLoginWithSession"));
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
    // Runs as the delegate hears the cancel, to see the page at that moment.
    std::function<void()> onCancelMfa;
    void cancelMfa(LoginMfaPage*) override
    {
        calls.append(QStringLiteral("cancelMfa"));
        if (onCancelMfa)
            onCancelMfa();
    }

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
    void preferencesViewControllerWantsLogOut(PreferencesPage*) override
    {
        calls.append(QStringLiteral("wantsLogOut"));
    }
    void preferencesViewControllerWantsHelp(PreferencesPage*) override { calls.append(QStringLiteral("wantsHelp")); }
    void preferencesViewControllerWantsQuit(PreferencesPage*) override { calls.append(QStringLiteral("wantsQuit")); }
};
