#include "sdk/base/LocalEnvironment.h"

#include "sdk/base/LibraryLog.h"

#include <mutex>

namespace {

struct EnvironmentState
{
    std::mutex mutex;
    QString domainName = LocalEnvironment::localDomainName();
};

EnvironmentState& state()
{
    static EnvironmentState s;
    return s;
}

} // namespace

void LocalEnvironment::setEnvironmentWithDomainName(const QString& domainName)
{
    const QString name = domainName.trimmed().toLower();
    if (name.isEmpty())
        return;
    EnvironmentState& s = state();
    std::lock_guard lock(s.mutex);
    if (s.domainName != name)
        qCInfo(lcLibrary, "Environment: %s", qUtf8Printable(name));
    s.domainName = name;
}

qint64 LocalEnvironment::environment()
{
    return domainName() == localDomainName() ? DefaultEnvironment : 1;
}

QString LocalEnvironment::domainName()
{
    EnvironmentState& s = state();
    std::lock_guard lock(s.mutex);
    return s.domainName;
}

QString LocalEnvironment::appHostname()
{
    const QString domain = domainName();
    return domain == localDomainName() ? domain : QStringLiteral("app.") + domain;
}

QString LocalEnvironment::appVersion()
{
    return QStringLiteral(VELURIA_VERSION);
}

QStringList LocalEnvironment::domainNames()
{
    return {localDomainName()};
}
