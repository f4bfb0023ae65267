#pragma once

#include "fakes/FakeCallLog.h"
#include "fakes/FakePending.h"
#include "service/VLRRESTProvider.h"
#include "service/VLRUserSession.h"
#include "service/VLRUtils.h"
#include "service/VLRVersionChecker.h"

#include <QUrl>

#include <memory>

class FakeVersionChecker : public VLRVersionChecker
{
public:
    FakePending<VLRVersionCheckHandler> checkHandlers;
    FakePending<VLRVersionInfoHandler> infoHandlers;

    void checkVersion(const VLRVersionCheckHandler& handler) override { checkHandlers.add(handler); }
    void getVersionInfo(const VLRVersionInfoHandler& handler) override { infoHandlers.add(handler); }
};

// The class-level side of the service library, scriptable: what it answers,
// every call it received, and the handlers it keeps. Tests call reset() in
// their set-up.
class FakeService
{
public:
    static FakeService& instance();
    static void reset();

    FakeCallLog log;

    // Environment.
    QString domainName = QStringLiteral("local");
    qint64 environment = 0;
    QString appHostname = QStringLiteral("app.veluria.test");
    QString appVersion = QStringLiteral("2.0.0");

    // Keychain: a null string means no stored password.
    QString storedPassword;

    // Utils.
    QUrl databaseLocation;
    QUrl resetPasswordURL = QUrl(QStringLiteral("https://app.veluria.test/users/password/new"));
    FakePending<VLRURLHandler> helpURLHandlers;

    // Sign-in: each call keeps its credentials, key and flag beside the handler.
    struct SignIn
    {
        QString email;
        QString password;
        QString apiKey;
        bool supportsMarketplace = false;
    };
    QList<SignIn> signIns;
    FakePending<VLRSignInHandler> signInHandlers;

    // REST provider.
    VLRUpdateSessionBlock updateSessionBlock;
    QList<VLRUserSessionPtr> announcedSessions;

    // Reachability.
    qint64 networkStatus = 1;

    // Version checkers made, in order.
    QList<std::shared_ptr<FakeVersionChecker>> versionCheckers;

    // Software updater.
    bool canLogout = true;
    vlr::OptionalError canLogoutError;
};
