#include "service/VLREnvironment.h"

#include "service/VLRLogFormat.h"

#include <mutex>

// Environment 0 is the embedded local service and answers to "localhost".
// Any other domain name names a remote service, which this build of the
// library cannot reach yet: it is remembered, and a sign-in there is refused
// with a clear error.
namespace {

const QString localDomainName = QStringLiteral("localhost");

struct EnvironmentState
{
    std::mutex mutex;
    QString domainName = localDomainName;
};

EnvironmentState& state()
{
    static EnvironmentState s;
    return s;
}

} // namespace

void VLREnvironment::setEnvironmentWithDomainName(const QString& domainName)
{
    const QString name = domainName.trimmed().toLower();
    if (name.isEmpty())
        return;
    EnvironmentState& s = state();
    std::lock_guard lock(s.mutex);
    if (s.domainName != name)
        VLRLogFormat(4, QStringLiteral("VeluriaSDK"), "Environment: %@", name);
    s.domainName = name;
}

qint64 VLREnvironment::environment()
{
    return domainName() == localDomainName ? DefaultEnvironment : 1;
}

QString VLREnvironment::domainName()
{
    EnvironmentState& s = state();
    std::lock_guard lock(s.mutex);
    return s.domainName;
}

QString VLREnvironment::appHostname()
{
    const QString domain = domainName();
    return domain == localDomainName ? domain : QStringLiteral("app.") + domain;
}

QString VLREnvironment::appVersion()
{
    return QStringLiteral(VELURIA_VERSION);
}
