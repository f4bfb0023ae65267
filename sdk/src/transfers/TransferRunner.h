#pragma once

#include "sdk/transfers/TransferJob.h"
#include "sdk/transfers/TransferResult.h"

#include <functional>
#include <memory>

// What moves the bytes of a queue's transfers: the local content store, or
// a team server. A queue's worker makes its runner on the worker thread, so
// that whatever the runner keeps (a database connection, a network access
// manager) belongs to that thread, and runs one transfer at a time on it.
class TransferRunner
{
public:
    struct Context
    {
        // Asked often; true means: end with the Stopped outcome at once,
        // keeping what is needed to go on later.
        std::function<bool()> shouldStop;
        // The total, once the runner knows it better than the job did.
        std::function<void(qint64 total)> sized;
        // Bytes done since the last call, verified ones of a resume included;
        // less than 0 when bytes counted before turned out lost.
        std::function<void(qint64 bytes)> advanced;
        // The job as it must be kept for a resume after a restart of the
        // client (an upload's id on the server); the queue saves it.
        std::function<void(const TransferJob& job)> noted;
    };
    using Factory = std::function<std::unique_ptr<TransferRunner>()>;

    virtual ~TransferRunner() = default;
    // A Failed outcome means the transfer will not go on by itself; the
    // runner decides which partial files stay for a retry.
    virtual TransferResult run(const TransferJob& job, const Context& context) = 0;
};
