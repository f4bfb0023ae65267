#include "fakes/FakeLoginVerifier.h"

void FakeLoginVerifier::verifyLoginWithCode(const QString& code, bool supportsMarketplace,
                                            const VLRVerifyHandler& completionHandler)
{
    log.record(QStringLiteral("verifyLoginWithCode"), {code, supportsMarketplace});
    verifyHandlers.add(completionHandler);
}
