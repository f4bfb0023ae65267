#include "sdk/base/ServiceError.h"

namespace {

QString describe(ServiceError::Code code, const QString& detail)
{
    switch (code) {
    case ServiceError::WrongCredentials:
        return QStringLiteral("The e-mail address or the password is not correct.");
    case ServiceError::WrongCode:
        return QStringLiteral("The verification code is not correct or has expired.");
    case ServiceError::VerificationEnded:
        return QStringLiteral("This sign-in has ended. Please sign in again.");
    case ServiceError::ClientKeyRefused:
        return QStringLiteral("This copy of Veluria is not allowed to use the service.");
    case ServiceError::EnvironmentUnavailable:
        return QStringLiteral("The Veluria service at \"%1\" can't be reached from this version of Veluria. "
                              "Choose \"localhost\" to use the service on this computer.")
            .arg(detail);
    case ServiceError::SignedOut:
        return QStringLiteral("You are signed out. Please sign in again.");
    case ServiceError::NeedsConfirmation:
        return QStringLiteral("Please confirm your e-mail address first.");
    case ServiceError::NotAMember:
        return QStringLiteral("You are not a member of this workspace.");
    case ServiceError::WorkspaceNotFound:
        return QStringLiteral("The workspace could not be found.");
    case ServiceError::RevisionNotFound:
        return QStringLiteral("The file of this link could not be found. It may have been removed.");
    case ServiceError::InvalidName:
        return QStringLiteral("\"%1\" can't be used as a name.").arg(detail);
    case ServiceError::NoDatabaseLocation:
        return QStringLiteral("Veluria has no folder to keep its data in.");
    case ServiceError::DatabaseFailure:
        return QStringLiteral("Veluria could not use its data: %1").arg(detail);
    case ServiceError::FileUnreadable:
        return QStringLiteral("Unable to read %1").arg(detail);
    case ServiceError::FileUnwritable:
        return QStringLiteral("Unable to write %1").arg(detail);
    case ServiceError::ContentDamaged:
        return QStringLiteral("The stored copy of \"%1\" is damaged.").arg(detail);
    case ServiceError::InvalidLink:
        return QStringLiteral("This is not a valid Veluria download link.");
    case ServiceError::NotRestartable:
        return QStringLiteral("This transfer can't be retried.");
    case ServiceError::FileChanged:
        return QStringLiteral("\"%1\" changed while it was being uploaded. Please try again.").arg(detail);
    case ServiceError::VersionInfoUnreadable:
        return QStringLiteral("The version information could not be read: %1").arg(detail);
    case ServiceError::ServerUnreachable:
        return QStringLiteral("The Veluria server could not be reached: %1").arg(detail);
    }
    return detail;
}

} // namespace

QString ServiceError::domainOf(Code code)
{
    return code < NoDatabaseLocation ? vlr::VLRWebErrorDomain : vlr::VLRFrameworkErrorDomain;
}

vlr::Error ServiceError::make(Code code, const QString& detail)
{
    return vlr::makeError(domainOf(code), code, describe(code, detail));
}

vlr::Error ServiceError::cancelled()
{
    return vlr::makeError(vlr::NSCocoaErrorDomain, vlr::NSUserCancelledError,
                          QStringLiteral("The operation was cancelled."));
}
