#include "sdk/transfers/Reaper.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace {

struct Retirement
{
    std::mutex mutex;
    std::condition_variable gone;
    int pending = 0;
};

Retirement& retirement()
{
    static Retirement r;
    return r;
}

} // namespace

void Reaper::retire(std::function<void()> ending)
{
    Retirement& r = retirement();
    {
        std::lock_guard lock(r.mutex);
        ++r.pending;
    }
    std::thread([ending = std::move(ending)]() mutable {
        ending();
        ending = nullptr;
        Retirement& r = retirement();
        std::lock_guard lock(r.mutex);
        --r.pending;
        r.gone.notify_all();
    }).detach();
}

void Reaper::waitForAll(std::chrono::milliseconds timeout)
{
    Retirement& r = retirement();
    std::unique_lock lock(r.mutex);
    r.gone.wait_for(lock, timeout, [&] { return r.pending == 0; });
}
