#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

// Work that takes long on a processor (Argon2id password hashes) runs on a
// pool of its own, so that a storm of sign-ins neither stalls the transfers
// that share a connection thread nor takes every core from them. The answer
// comes back on the thread of the object that asked, if it still exists.
namespace SlowWork {

void start(QObject* context, std::function<void()> work, std::function<void()> then);

template <typename Result>
void run(QObject* context, std::function<Result()> work, std::function<void(const Result&)> then)
{
    auto result = std::make_shared<Result>();
    start(
        context, [work = std::move(work), result] { *result = work(); },
        [then = std::move(then), result] { then(*result); });
}

// Before the threads that asked go away.
void waitForAll();

} // namespace SlowWork
