#include "fakes/FakeService.h"

#include "service/VLREnvironment.h"
#include "service/VLRInit.h"
#include "service/VLRKeychain.h"
#include "service/VLRReachabilityManager.h"
#include "service/VLRSoftwareUpdater.h"

// The class-level operations of the contract, answered by the test double.

FakeService& FakeService::instance()
{
    static FakeService service;
    return service;
}

void FakeService::reset()
{
    instance() = FakeService();
}

void VLRInit::initUsingCrashlytics(bool crashReporting)
{
    FakeService::instance().log.record(QStringLiteral("initUsingCrashlytics"), {crashReporting});
}

void VLRInit::shutdown()
{
    FakeService::instance().log.record(QStringLiteral("shutdown"));
}

void VLREnvironment::setEnvironmentWithDomainName(const QString& domainName)
{
    FakeService& s = FakeService::instance();
    s.log.record(QStringLiteral("setEnvironmentWithDomainName"), {domainName});
    s.domainName = domainName;
}

qint64 VLREnvironment::environment() { return FakeService::instance().environment; }
QString VLREnvironment::domainName() { return FakeService::instance().domainName; }
QString VLREnvironment::appHostname() { return FakeService::instance().appHostname; }
QString VLREnvironment::appVersion() { return FakeService::instance().appVersion; }

QString VLRKeychain::loadPassword()
{
    FakeService& s = FakeService::instance();
    s.log.record(QStringLiteral("loadPassword"));
    return s.storedPassword;
}

void VLRKeychain::savePassword(const QString& password)
{
    FakeService& s = FakeService::instance();
    s.log.record(QStringLiteral("savePassword"));
    s.storedPassword = password;
}

void VLRKeychain::deletePassword()
{
    FakeService& s = FakeService::instance();
    s.log.record(QStringLiteral("deletePassword"));
    s.storedPassword = QString();
}

void VLRUtils::setDatabaseLocation(const QUrl& location)
{
    FakeService& s = FakeService::instance();
    s.log.record(QStringLiteral("setDatabaseLocation"), {location});
    s.databaseLocation = location;
}

QUrl VLRUtils::databaseLocation() { return FakeService::instance().databaseLocation; }
QUrl VLRUtils::resetPasswordURL() { return FakeService::instance().resetPasswordURL; }

void VLRUtils::getHelpURLWithCompletionHandler(const VLRURLHandler& handler)
{
    FakeService& s = FakeService::instance();
    s.log.record(QStringLiteral("getHelpURLWithCompletionHandler"));
    s.helpURLHandlers.add(handler);
}

void VLRUserSession::createUserSessionWithLoginCredentials(const VLRLoginCredentials& credentials,
                                                           const QString& apiKey, bool supportsMarketplace,
                                                           const VLRSignInHandler& completionHandler)
{
    FakeService& s = FakeService::instance();
    s.log.record(QStringLiteral("createUserSessionWithLoginCredentials"), {credentials.email(), apiKey, supportsMarketplace});
    s.signIns.append({credentials.email(), credentials.password(), apiKey, supportsMarketplace});
    s.signInHandlers.add(completionHandler);
}

namespace {

class FakeRESTProvider : public VLRRESTProvider
{
public:
    void setUpdateSessionBlock(const VLRUpdateSessionBlock& block) override
    {
        FakeService& s = FakeService::instance();
        s.log.record(QStringLiteral("setUpdateSessionBlock"));
        s.updateSessionBlock = block;
    }

    void sessionDidChange(const VLRUserSessionPtr& session) override
    {
        FakeService& s = FakeService::instance();
        s.log.record(QStringLiteral("sessionDidChange"), {bool(session)});
        s.announcedSessions.append(session);
    }
};

class FakeReachabilityManager : public VLRReachabilityManager
{
public:
    qint64 currentNetworkStatus() const override { return FakeService::instance().networkStatus; }
};

} // namespace

VLRRESTProvider& VLRRESTProvider::sharedProvider()
{
    static FakeRESTProvider provider;
    return provider;
}

VLRReachabilityManager& VLRReachabilityManager::sharedReachabilityManager()
{
    static FakeReachabilityManager manager;
    return manager;
}

std::shared_ptr<VLRVersionChecker> VLRVersionChecker::create()
{
    auto checker = std::make_shared<FakeVersionChecker>();
    FakeService::instance().versionCheckers.append(checker);
    return checker;
}

bool VLRSoftwareUpdater::canLogout(vlr::OptionalError* error)
{
    FakeService& s = FakeService::instance();
    s.log.record(QStringLiteral("canLogout"));
    if (!s.canLogout && error)
        *error = s.canLogoutError;
    return s.canLogout;
}
