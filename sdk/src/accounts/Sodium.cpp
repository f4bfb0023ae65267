#include "sdk/accounts/Sodium.h"

#include <sodium.h>

#include <mutex>

void Sodium::initialise()
{
    static std::once_flag once;
    std::call_once(once, [] {
        if (sodium_init() < 0)
            std::terminate();
    });
}
