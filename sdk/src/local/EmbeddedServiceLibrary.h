#pragma once

#include "sdk/accounts/LocalKeychain.h"
#include "sdk/base/LocalEnvironment.h"
#include "sdk/local/LocalInit.h"
#include "sdk/local/LocalRESTProvider.h"
#include "sdk/local/LocalReachabilityManager.h"
#include "sdk/local/LocalUtils.h"
#include "sdk/versions/LocalSoftwareUpdater.h"

#include "service/VLRServiceLibrary.h"

// The embedded local service: accounts, workspaces and transfers on this
// machine, in the database folder handed to utils(). Its state (database,
// sessions, environment) is the process's, so instances are interchangeable;
// the program makes one at start.
class EmbeddedServiceLibrary : public VLRServiceLibrary
{
public:
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
    LocalInit m_init;
    LocalEnvironment m_environment;
    LocalKeychain m_keychain;
    LocalUtils m_utils;
    LocalSoftwareUpdater m_softwareUpdater;
    LocalRESTProvider m_restProvider;
    LocalReachabilityManager m_reachabilityManager;
};
