#include "sdk/local/LocalSignIn.h"

#include "sdk/accounts/AccountsLog.h"
#include "sdk/accounts/PasswordHasher.h"
#include "sdk/accounts/SessionRegistry.h"
#include "sdk/base/Database.h"
#include "sdk/base/DatabaseLocation.h"
#include "sdk/base/MainThread.h"
#include "sdk/base/ServiceError.h"
#include "sdk/base/ServiceThread.h"
#include "sdk/local/LocalLoginVerifier.h"
#include "sdk/local/LocalUserSession.h"
#include "sdk/transfers/TransferLeftovers.h"
#include "sdk/workspaces/WorkspaceStore.h"

#include "sdk/base/LocalEnvironment.h"

#include <mutex>

namespace {

struct SignInThread
{
    std::mutex mutex;
    std::shared_ptr<ServiceThread> thread;
    std::shared_ptr<void> registration;
};

SignInThread& signInThread()
{
    static SignInThread s;
    return s;
}

} // namespace

// Made at the first sign-in, and again after a shutdown ended it.
std::shared_ptr<ServiceThread> LocalSignIn::thread()
{
    SignInThread& s = signInThread();
    std::lock_guard lock(s.mutex);
    if (!s.thread) {
        s.thread = std::make_shared<ServiceThread>();
        s.registration = SessionRegistry::add([] {
            std::shared_ptr<ServiceThread> ending;
            {
                SignInThread& s = signInThread();
                std::lock_guard lock(s.mutex);
                ending.swap(s.thread);
            }
            if (ending)
                ending->finishAndStop();
        });
    }
    return s.thread;
}

void LocalSignIn::start(const VLRLoginCredentials& credentials, const QString& apiKey,
                        const VLRSignInHandler& completionHandler)
{
    auto answerError = [completionHandler](const vlr::Error& error) {
        if (completionHandler)
            MainThread::post([completionHandler, error] { completionHandler(nullptr, nullptr, error); });
    };
    if (apiKey != clientKey) {
        qCWarning(lcAccounts, "Sign-in refused: unknown client key");
        return answerError(ServiceError::make(ServiceError::ClientKeyRefused));
    }
    LocalEnvironment environment;
    if (environment.environment() != VLREnvironment::DefaultEnvironment)
        return answerError(ServiceError::make(ServiceError::EnvironmentUnavailable, environment.domainName()));

    const QString email = credentials.email().trimmed();
    const QString password = credentials.password();
    thread()->post([email, password, completionHandler, answerError](ServiceThread& worker) {
        const QString folder = DatabaseLocation::waitForFolder(locationTimeout);
        if (folder.isNull())
            return answerError(ServiceError::make(ServiceError::NoDatabaseLocation));
        QString failure;
        Database* database = worker.database(folder, &failure);
        // A disk filled by what killed uploads left may have room again once
        // that is gone.
        if (!database && TransferLeftovers::sweepAll(folder) > 0)
            database = worker.database(folder, &failure);
        if (!database) {
            qCWarning(lcAccounts, "Sign-in failed: the database can't be opened: %s", qUtf8Printable(failure));
            return answerError(ServiceError::make(ServiceError::DatabaseFailure, failure));
        }
        const auto account = AccountStore(*database).findByEmail(email);
        if (!account) {
            PasswordHasher::verifyNothing(password);
            return answerError(ServiceError::make(ServiceError::WrongCredentials));
        }
        if (!PasswordHasher::verify(password, account->passwordHash))
            return answerError(ServiceError::make(ServiceError::WrongCredentials));
        if (!account->totpSecret.isEmpty()) {
            const AccountStore::Account found = *account;
            MainThread::post([found, folder, completionHandler] {
                auto verifier = std::make_shared<LocalLoginVerifier>(found, folder);
                if (completionHandler)
                    completionHandler(nullptr, verifier, std::nullopt);
            });
            return;
        }
        signedIn(worker, *account, folder, completionHandler);
    });
}

// Runs on the sign-in thread; the session is made on the GUI thread.
void LocalSignIn::signedIn(ServiceThread& worker, const AccountStore::Account& account, const QString& databaseFolder,
                           const VLRSignInHandler& completionHandler)
{
    QString failure;
    Database* database = worker.database(databaseFolder, &failure);
    LocalUserSession::Start start;
    start.account = account;
    start.databaseFolder = databaseFolder;
    if (database) {
        WorkspaceStore workspaces(*database);
        start.hasWorkspaces = workspaces.workspaceCountOf(account.id) > 0;
        start.lastPublicationSeq = workspaces.lastPublicationSeq();
    }
    qCInfo(lcAccounts, "Signed in: %s", qUtf8Printable(account.email));
    MainThread::post([start, completionHandler] {
        auto session = LocalUserSession::create(start);
        if (completionHandler)
            completionHandler(session, nullptr, std::nullopt);
    });
}
