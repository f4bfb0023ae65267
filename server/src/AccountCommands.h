#pragma once

class AdminCommands;

// The administrative commands on accounts: add-user, confirm, avatar,
// passwd and enable-2fa.
class AccountCommands
{
public:
    static void addTo(AdminCommands& commands);
};
