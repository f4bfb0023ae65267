#include "sdk/local/LocalLoginVerifier.h"

#include "sdk/accounts/Totp.h"
#include "sdk/base/Database.h"
#include "sdk/base/MainThread.h"
#include "sdk/base/ServiceError.h"
#include "sdk/base/ServiceThread.h"
#include "sdk/local/LocalSignIn.h"

#include <QDateTime>

LocalLoginVerifier::LocalLoginVerifier(const AccountStore::Account& account, const QString& databaseFolder)
    : m_account(account)
    , m_databaseFolder(databaseFolder)
{ }

void LocalLoginVerifier::verifyLoginWithCode(const QString& code, bool, const VLRVerifyHandler& completionHandler)
{
    auto answer = [completionHandler](const VLRUserSessionPtr& session, const vlr::OptionalError& error) {
        if (completionHandler)
            completionHandler(session, error);
    };
    if (m_used || m_attempts >= allowedAttempts) {
        MainThread::post([answer] { answer(nullptr, ServiceError::make(ServiceError::VerificationEnded)); });
        return;
    }
    ++m_attempts;
    const std::weak_ptr<LocalLoginVerifier> weak = std::static_pointer_cast<LocalLoginVerifier>(shared_from_this());
    const QString userId = m_account.id;
    const QString folder = m_databaseFolder;
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    LocalSignIn::thread()->post([weak, userId, folder, code, now, answer](ServiceThread& worker) {
        QString failure;
        Database* database = worker.database(folder, &failure);
        if (!database)
            return MainThread::post(
                [answer, failure] { answer(nullptr, ServiceError::make(ServiceError::DatabaseFailure, failure)); });
        AccountStore accounts(*database);
        const auto account = accounts.findById(userId);
        const qint64 step = account ? Totp::verify(account->totpSecret, code, now, account->totpLastStep) : -1;
        if (step < 0 || !accounts.useCodeStep(userId, step))
            return MainThread::post([answer] { answer(nullptr, ServiceError::make(ServiceError::WrongCode)); });
        LocalSignIn::signedIn(worker, *account, folder,
                              [weak, answer](const VLRUserSessionPtr& session, const VLRLoginVerifierPtr&,
                                             const vlr::OptionalError& error) {
                                  if (auto self = weak.lock())
                                      self->m_used = true;
                                  answer(session, error);
                              });
    });
}
