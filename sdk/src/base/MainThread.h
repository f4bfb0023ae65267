#pragma once

#include <functional>

// The thread on which every record of the library changes and every handler
// and delegate call of the client runs: the application's GUI thread.
class MainThread
{
public:
    // Runs the work on the GUI thread at its next turn; without an
    // application object (a command-line tool before it made one) at once.
    static void post(std::function<void()> work);
    static bool isCurrent();
};
