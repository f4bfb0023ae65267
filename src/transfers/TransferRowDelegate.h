#pragma once

class TransferRow;

// What a row reports of its hover buttons; it acts on nothing itself.
class TransferRowDelegate
{
public:
    virtual ~TransferRowDelegate() = default;
    virtual void transferRowDidCancel(TransferRow* row) = 0;
    virtual void transferRowDidPause(TransferRow* row) = 0;
    virtual void transferRowDidResume(TransferRow* row) = 0;
    virtual void transferRowDidRetry(TransferRow* row) = 0;
};
