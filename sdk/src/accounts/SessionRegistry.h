#pragma once

#include <functional>
#include <memory>

// The work that lives beyond one call (sessions, sign-ins) registers here,
// so that the library's shutdown can end all of it before the process goes.
class SessionRegistry
{
public:
    using Ending = std::function<void()>;

    // The ending runs at shutdown unless the token has gone by then.
    static std::shared_ptr<void> add(Ending ending);
    static void endAll();
};
