#pragma once

#include <functional>

class QObject;

// Deferred and delayed calls on the GUI thread, as the program's main queue.
// Every operation may be called from any thread. A call bound to a context
// object runs in that object's thread (for every object of the client, the
// GUI thread) and is dropped when the object is destroyed before its turn.
class VLRMainQueue
{
public:
    // At the next turn of the GUI event loop.
    static void dispatchAsync(std::function<void()> block);
    static void dispatchAsync(QObject* context, std::function<void()> block);

    // After the given time, on the GUI event loop; a negative time counts as 0.
    static void dispatchAfter(int milliseconds, std::function<void()> block);
    static void dispatchAfter(int milliseconds, QObject* context, std::function<void()> block);
};
