#pragma once

#include "service/VLRError.h"

#include <QString>

// The failures of the library, each with its domain, code and the text that
// the user reads.
class ServiceError
{
public:
    enum Code : qint64 {
        // VLRWebErrorDomain: what the service answers.
        WrongCredentials = vlr::WrongCredentialsError,
        WrongCode = 3,
        VerificationEnded = 4,
        ClientKeyRefused = 5,
        EnvironmentUnavailable = 7,
        SignedOut = 8,
        NeedsConfirmation = 9,
        NotAMember = 10,
        WorkspaceNotFound = 11,
        RevisionNotFound = 12,
        InvalidName = 13,
        // VLRFrameworkErrorDomain: what went wrong on this machine.
        NoDatabaseLocation = 30,
        DatabaseFailure = 31,
        FileUnreadable = 32,
        FileUnwritable = 33,
        ContentDamaged = 34,
        InvalidLink = 35,
        NotRestartable = 36,
        FileChanged = 37,
        VersionInfoUnreadable = 38,
        // Transfers with a team server.
        ServerUnreachable = 50,
    };

    static vlr::Error make(Code code, const QString& detail = QString());
    static vlr::Error cancelled();
    static QString domainOf(Code code);
};
