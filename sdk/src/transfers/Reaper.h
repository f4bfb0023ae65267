#pragma once

#include <chrono>
#include <functional>

// Ends background work on a thread of its own, so that the GUI never waits
// for a worker to reach its next chunk, its final sync or its last write.
// The library's shutdown waits for all of it.
class Reaper
{
public:
    static void retire(std::function<void()> ending);
    // Waits, for a while at most, until every retired piece has ended.
    static void waitForAll(std::chrono::milliseconds timeout);
};
