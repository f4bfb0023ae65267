#pragma once

#include <QString>
#include <QStringList>

// Which service the library talks to. Environment 0 is the default one.
class VLREnvironment
{
public:
    static constexpr qint64 DefaultEnvironment = 0;

    virtual ~VLREnvironment() = default;
    virtual void setEnvironmentWithDomainName(const QString& domainName) = 0;
    virtual qint64 environment() = 0;
    virtual QString domainName() = 0;
    virtual QString appHostname() = 0;
    virtual QString appVersion() = 0;
    // The domain names a sign-in can go to, the default environment's first:
    // what the environment selector offers.
    virtual QStringList domainNames() = 0;
};
