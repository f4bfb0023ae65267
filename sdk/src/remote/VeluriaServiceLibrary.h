#pragma once

#include "sdk/local/EmbeddedServiceLibrary.h"
#include "sdk/remote/RemoteEnvironment.h"
#include "sdk/remote/RemoteReachabilityManager.h"
#include "sdk/remote/RemoteUtils.h"

// The service library as the program hands it to the client: the embedded
// local service for "localhost", and the team server that the library's
// settings name for its host name. Everything that is not a session's own
// goes to the embedded service, which keeps the process's state (database
// folder, environment, keychain); the environment, the web pages and the
// reachability know about the server.
class VeluriaServiceLibrary : public VLRServiceLibrary
{
public:
    VLRInit& init() override { return m_embedded.init(); }
    VLREnvironment& environment() override { return m_environment; }
    VLRKeychain& keychain() override { return m_embedded.keychain(); }
    VLRUtils& utils() override { return m_utils; }
    VLRSoftwareUpdater& softwareUpdater() override { return m_embedded.softwareUpdater(); }
    VLRRESTProvider& restProvider() override { return m_embedded.restProvider(); }
    VLRReachabilityManager& reachabilityManager() override { return m_reachabilityManager; }
    std::shared_ptr<VLRVersionChecker> createVersionChecker() override;
    void createUserSessionWithLoginCredentials(const VLRLoginCredentials& credentials, const QString& apiKey,
                                               bool supportsMarketplace,
                                               const VLRSignInHandler& completionHandler) override;

private:
    EmbeddedServiceLibrary m_embedded;
    RemoteEnvironment m_environment;
    RemoteUtils m_utils;
    RemoteReachabilityManager m_reachabilityManager;
};
