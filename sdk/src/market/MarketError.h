#pragma once

#include "service/VLRError.h"

// The marketplace's failures, in VLRFrameworkErrorDomain, each with the text
// that the user reads.
class MarketError
{
public:
    enum Code : qint64 {
        InstallerNotFound = 60,
        NotEntitled = 61,
        NoRevision = 62,
        PackageDamaged = 63,
        InstallFailed = 64,
        InvalidDescription = 65,
        PublishFailed = 66,
        ServerFailed = 67,
        NotOnServer = 68,
    };

    static vlr::Error make(Code code, const QString& name = QString(), const QString& detail = QString());
};
