#pragma once

class AdminCommands;

// The administrative commands of the software catalogue: add-vendor,
// add-product, add-installer, publish-installer, grant-purchase and
// installers, each answering what veluria-admin prints for it on a local
// database. A picture (--image) and a package (the second argument of
// publish-installer) come as files uploaded to the store first; installers
// takes the option "machine" to tell that machine's installs apart.
class MarketAdmin
{
public:
    static void addTo(AdminCommands& commands);
};
