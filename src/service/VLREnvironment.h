#pragma once

#include <QString>

// Which service the library talks to. Environment 0 is the default one.
class VLREnvironment
{
public:
    static constexpr qint64 DefaultEnvironment = 0;

    static void setEnvironmentWithDomainName(const QString& domainName);
    static qint64 environment();
    static QString domainName();
    static QString appHostname();
    static QString appVersion();
};
