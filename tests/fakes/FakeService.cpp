#include "fakes/FakeService.h"

FakeService::FakeService()
{
    m_init.s = m_environment.s = m_keychain.s = m_utils.s = m_softwareUpdater.s = m_restProvider.s =
        m_reachabilityManager.s = this;
}

void FakeService::Init::initUsingCrashlytics(bool crashReporting)
{
    s->log.record(QStringLiteral("initUsingCrashlytics"), {crashReporting});
}

void FakeService::Init::shutdown()
{
    s->log.record(QStringLiteral("shutdown"));
}

void FakeService::Environment::setEnvironmentWithDomainName(const QString& domainName)
{
    s->log.record(QStringLiteral("setEnvironmentWithDomainName"), {domainName});
    s->domainName = domainName;
}

QString FakeService::Keychain::loadPassword()
{
    s->log.record(QStringLiteral("loadPassword"));
    return s->storedPassword;
}

void FakeService::Keychain::savePassword(const QString& password)
{
    s->log.record(QStringLiteral("savePassword"));
    s->storedPassword = password;
}

void FakeService::Keychain::deletePassword()
{
    s->log.record(QStringLiteral("deletePassword"));
    s->storedPassword = QString();
}

void FakeService::Utils::setDatabaseLocation(const QUrl& location)
{
    s->log.record(QStringLiteral("setDatabaseLocation"), {location});
    s->databaseLocation = location;
}

void FakeService::Utils::getHelpURLWithCompletionHandler(const VLRURLHandler& handler)
{
    s->log.record(QStringLiteral("getHelpURLWithCompletionHandler"));
    s->helpURLHandlers.add(handler);
}

bool FakeService::SoftwareUpdater::canLogout(vlr::OptionalError* error)
{
    s->log.record(QStringLiteral("canLogout"));
    if (!s->canLogout && error)
        *error = s->canLogoutError;
    return s->canLogout;
}

void FakeService::RESTProvider::setUpdateSessionBlock(const VLRUpdateSessionBlock& block)
{
    s->log.record(QStringLiteral("setUpdateSessionBlock"));
    s->updateSessionBlock = block;
}

void FakeService::RESTProvider::sessionDidChange(const VLRUserSessionPtr& session)
{
    s->log.record(QStringLiteral("sessionDidChange"), {bool(session)});
    s->announcedSessions.append(session);
}

std::shared_ptr<VLRVersionChecker> FakeService::createVersionChecker()
{
    auto checker = std::make_shared<FakeVersionChecker>();
    versionCheckers.append(checker);
    return checker;
}

void FakeService::createUserSessionWithLoginCredentials(const VLRLoginCredentials& credentials, const QString& apiKey,
                                                        bool supportsMarketplace,
                                                        const VLRSignInHandler& completionHandler)
{
    log.record(QStringLiteral("createUserSessionWithLoginCredentials"),
               {credentials.email(), apiKey, supportsMarketplace});
    signIns.append({credentials.email(), credentials.password(), apiKey, supportsMarketplace});
    signInHandlers.add(completionHandler);
}
