#include "sdk/remote/RemoteEnvironment.h"

RemoteEndpoint RemoteEnvironment::chosenServer()
{
    RemoteEndpoint server = RemoteEndpoint::fromSettings();
    if (!server.isValid() || server.domainName() != LocalEnvironment().domainName())
        return {};
    return server;
}

QString RemoteEnvironment::appHostname()
{
    const RemoteEndpoint server = chosenServer();
    // The server's web pages share its host and port.
    return server.isValid() ? server.base.authority() : LocalEnvironment::appHostname();
}

QStringList RemoteEnvironment::domainNames()
{
    QStringList names = LocalEnvironment::domainNames();
    const RemoteEndpoint server = RemoteEndpoint::fromSettings();
    if (server.isValid() && !names.contains(server.domainName()))
        names.append(server.domainName());
    return names;
}
