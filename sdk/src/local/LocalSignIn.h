#pragma once

#include "sdk/accounts/AccountStore.h"

#include "service/VLRUserSession.h"

#include <chrono>
#include <memory>

class ServiceThread;

// Signing in to the local service: the client's key, the environment, the
// address and password (Argon2id), and, for accounts that have one, the
// second factor through a verifier. The checks run on the sign-in thread;
// the handler runs on the GUI thread with exactly one outcome.
class LocalSignIn
{
public:
    static inline const QString clientKey = QStringLiteral("lumenra-courier-token");
    // How long a sign-in waits for the client to hand over the database
    // folder, which may come after the sign-in started.
    static constexpr auto locationTimeout = std::chrono::seconds(30);

    static void start(const VLRLoginCredentials& credentials, const QString& apiKey,
                      const VLRSignInHandler& completionHandler);
    // On the sign-in thread: hands over a session for the account, once its
    // identity is proven.
    static void signedIn(ServiceThread& worker, const AccountStore::Account& account, const QString& databaseFolder,
                         const VLRSignInHandler& completionHandler);
    static std::shared_ptr<ServiceThread> thread();
};
