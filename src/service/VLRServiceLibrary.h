#pragma once

#include "service/VLRUserSession.h"

#include <memory>

class VLREnvironment;
class VLRInit;
class VLRKeychain;
class VLRReachabilityManager;
class VLRRESTProvider;
class VLRSoftwareUpdater;
class VLRUtils;
class VLRVersionChecker;

// One service library behind the client: the embedded local service, a
// remote one, or a test double. The program makes one at start and hands it
// to the client, which reaches every service that is not a session's own
// through it. The library outlives every object it hands out; all calls are
// made on the GUI thread.
class VLRServiceLibrary
{
public:
    virtual ~VLRServiceLibrary() = default;

    virtual VLRInit& init() = 0;
    virtual VLREnvironment& environment() = 0;
    virtual VLRKeychain& keychain() = 0;
    virtual VLRUtils& utils() = 0;
    virtual VLRSoftwareUpdater& softwareUpdater() = 0;
    virtual VLRRESTProvider& restProvider() = 0;
    virtual VLRReachabilityManager& reachabilityManager() = 0;
    // A new checker for one version check.
    virtual std::shared_ptr<VLRVersionChecker> createVersionChecker() = 0;

    // Exactly one outcome: an error, a verifier when a second factor is
    // needed, or a session.
    virtual void createUserSessionWithLoginCredentials(const VLRLoginCredentials& credentials, const QString& apiKey,
                                                       bool supportsMarketplace,
                                                       const VLRSignInHandler& completionHandler) = 0;
};
