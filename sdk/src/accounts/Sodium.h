#pragma once

// libsodium wants one initialisation before its first use, from any thread.
class Sodium
{
public:
    static void initialise();
};
