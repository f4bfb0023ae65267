#include "service/VLRUserSession.h"

#include "MainThread.h"
#include "ServiceError.h"

void VLRUserSession::createUserSessionWithLoginCredentials(const VLRLoginCredentials&, const QString&, bool,
                                                           const VLRSignInHandler& completionHandler)
{
    if (completionHandler)
        MainThread::post([completionHandler] {
            completionHandler(nullptr, nullptr, ServiceError::make(ServiceError::NoDatabaseLocation));
        });
}
