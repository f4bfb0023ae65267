#pragma once

#include "sdk/transfers/QueuedTransfer.h"

// What a queue needs of its session: the completed list, the pause-all
// state and the database.
class TransferQueueHost
{
public:
    virtual ~TransferQueueHost() = default;

    virtual bool allTransfersPaused() const = 0;
    virtual void transferCompleted(const QueuedTransferPtr& transfer) = 0;
    // Takes a transfer out of the completed list; false when it is not there.
    virtual bool takeCompletedTransfer(const QueuedTransferPtr& transfer) = 0;
    // Writes the transfer's state to the database, off the GUI thread.
    virtual void persistTransfer(const TransferJob& job) = 0;
    virtual void forgetTransfer(const QString& id) = 0;
    // Removes what a cancelled transfer had copied so far.
    virtual void discardPartials(const TransferJob& job) = 0;
};
