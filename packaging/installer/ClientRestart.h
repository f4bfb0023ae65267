#pragma once

#include <QString>

// The client of a bundle started anew after an update: the running client
// whose program lies under the bundle's root is asked to stop (SIGTERM, its
// ordinary way out), and once it is gone, or after a grace time, the one in
// "<root>/current/bin" is started. Clients of other installs are left alone.
class ClientRestart
{
public:
    static constexpr int GraceMilliseconds = 10000;

    static void restart(const QString& bundleRoot);
};
