#pragma once

#include "service/VLREnvironment.h"

// Environment 0 is the embedded local service and answers to "localhost".
// Any other domain name names a remote service, which this build of the
// library cannot reach yet: it is remembered, and a sign-in there is refused
// with a clear error. The choice is the process's: every instance reads and
// changes the same one, from any thread.
class LocalEnvironment : public VLREnvironment
{
public:
    void setEnvironmentWithDomainName(const QString& domainName) override;
    qint64 environment() override;
    QString domainName() override;
    QString appHostname() override;
    QString appVersion() override;
    QStringList domainNames() override;

    static QString localDomainName() { return QStringLiteral("localhost"); }
};
