#pragma once

#include "sdk/base/LocalEnvironment.h"
#include "sdk/net/RemoteEndpoint.h"

// The embedded service's "localhost" and, when the library's settings name a
// team server, that server's host name as environment 1. The choice itself
// is the process's, as the embedded service keeps it.
class RemoteEnvironment : public LocalEnvironment
{
public:
    // The team server that the current choice names, or an invalid endpoint
    // when the choice is not the configured server.
    static RemoteEndpoint chosenServer();

    QString appHostname() override;
    QStringList domainNames() override;
};
