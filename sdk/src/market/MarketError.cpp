#include "sdk/market/MarketError.h"

#include "sdk/base/ServiceError.h"

namespace {

QString describe(MarketError::Code code, const QString& name, const QString& detail)
{
    switch (code) {
    case MarketError::InstallerNotFound:
        return QStringLiteral("This software is no longer in the catalogue.");
    case MarketError::NotEntitled:
        return QStringLiteral("None of your purchases includes %1.").arg(name);
    case MarketError::NoRevision:
        return QStringLiteral("%1 has no version to install yet.").arg(name);
    case MarketError::PackageDamaged:
        return QStringLiteral("The package of %1 is damaged. Please try again later.").arg(name);
    case MarketError::InstallFailed:
        return QStringLiteral("%1 could not be installed. %2").arg(name, detail);
    case MarketError::InvalidDescription:
        return QStringLiteral("The installer's description can't be used: %1").arg(detail);
    case MarketError::PublishFailed:
        return QStringLiteral("%1 could not be published: %2").arg(name, detail);
    case MarketError::ServerFailed:
        return ServiceError::make(ServiceError::ServerUnreachable, detail).localizedDescription;
    case MarketError::NotOnServer:
        return QStringLiteral("The catalogue of a Veluria server is changed by its administrators, with "
                              "veluria-admin --server.");
    }
    return detail;
}

} // namespace

vlr::Error MarketError::make(Code code, const QString& name, const QString& detail)
{
    return vlr::makeError(vlr::VLRFrameworkErrorDomain, code, describe(code, name, detail));
}
