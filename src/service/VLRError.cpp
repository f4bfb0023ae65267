#include "service/VLRError.h"

namespace vlr {

bool Error::isCancellation() const
{
    return domain == NSCocoaErrorDomain && code == NSUserCancelledError;
}

Error makeError(const QString& domain, qint64 code, const QString& description, QVariantMap userInfo)
{
    if (!userInfo.contains(NSLocalizedDescriptionKey))
        userInfo.insert(NSLocalizedDescriptionKey, description);
    return Error{domain, code, description, std::move(userInfo)};
}

} // namespace vlr
