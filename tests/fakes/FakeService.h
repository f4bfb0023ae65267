#pragma once

#include "fakes/FakeCallLog.h"
#include "fakes/FakePending.h"
#include "service/VLREnvironment.h"
#include "service/VLRInit.h"
#include "service/VLRKeychain.h"
#include "service/VLRRESTProvider.h"
#include "service/VLRReachabilityManager.h"
#include "service/VLRServiceLibrary.h"
#include "service/VLRSoftwareUpdater.h"
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

// What the scriptable service library answers, every call it received, and
// the handlers it keeps.
struct FakeServiceState
{
    FakeCallLog log;

    // Environment.
    QString domainName = QStringLiteral("local");
    qint64 environmentNumber = 0;
    QString appHostname = QStringLiteral("app.veluria.test");
    QString appVersion = QStringLiteral("2.0.0");
    QStringList domainNames = {QStringLiteral("localhost"), QStringLiteral("veluria.com"),
                               QStringLiteral("staging.veluria.com")};

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

// The service library, scriptable through the fields of its state. Each test
// makes its own and hands it to the client.
class FakeService : public VLRServiceLibrary, public FakeServiceState
{
public:
    FakeService();
    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;

    // Forgets every call and answer, as a new double would, while the client
    // keeps holding this one.
    void reset() { static_cast<FakeServiceState&>(*this) = FakeServiceState(); }

    VLRInit& init() override { return m_init; }
    VLREnvironment& environment() override { return m_environment; }
    VLRKeychain& keychain() override { return m_keychain; }
    VLRUtils& utils() override { return m_utils; }
    VLRSoftwareUpdater& softwareUpdater() override { return m_softwareUpdater; }
    VLRRESTProvider& restProvider() override { return m_restProvider; }
    VLRReachabilityManager& reachabilityManager() override { return m_reachabilityManager; }
    std::shared_ptr<VLRVersionChecker> createVersionChecker() override;
    void createUserSessionWithLoginCredentials(const VLRLoginCredentials& credentials, const QString& apiKey,
                                               bool supportsMarketplace,
                                               const VLRSignInHandler& completionHandler) override;

private:
    // Each part answers from the fields above and writes to the log.
    struct Init : VLRInit
    {
        FakeService* s;
        void initUsingCrashlytics(bool crashReporting) override;
        void shutdown() override;
    };
    struct Environment : VLREnvironment
    {
        FakeService* s;
        void setEnvironmentWithDomainName(const QString& domainName) override;
        qint64 environment() override { return s->environmentNumber; }
        QString domainName() override { return s->domainName; }
        QString appHostname() override { return s->appHostname; }
        QString appVersion() override { return s->appVersion; }
        QStringList domainNames() override { return s->domainNames; }
    };
    struct Keychain : VLRKeychain
    {
        FakeService* s;
        QString loadPassword() override;
        void savePassword(const QString& password) override;
        void deletePassword() override;
    };
    struct Utils : VLRUtils
    {
        FakeService* s;
        void setDatabaseLocation(const QUrl& location) override;
        QUrl databaseLocation() override { return s->databaseLocation; }
        QUrl resetPasswordURL() override { return s->resetPasswordURL; }
        void getHelpURLWithCompletionHandler(const VLRURLHandler& handler) override;
    };
    struct SoftwareUpdater : VLRSoftwareUpdater
    {
        FakeService* s;
        bool canLogout(vlr::OptionalError* error) override;
    };
    struct RESTProvider : VLRRESTProvider
    {
        FakeService* s;
        void setUpdateSessionBlock(const VLRUpdateSessionBlock& block) override;
        void sessionDidChange(const VLRUserSessionPtr& session) override;
    };
    struct ReachabilityManager : VLRReachabilityManager
    {
        FakeService* s;
        qint64 currentNetworkStatus() const override { return s->networkStatus; }
    };

    Init m_init;
    Environment m_environment;
    Keychain m_keychain;
    Utils m_utils;
    SoftwareUpdater m_softwareUpdater;
    RESTProvider m_restProvider;
    ReachabilityManager m_reachabilityManager;
};
