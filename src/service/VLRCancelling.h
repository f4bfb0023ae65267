#pragma once

class VLRCancelling
{
public:
    virtual ~VLRCancelling() = default;
    virtual void cancel() = 0;
    virtual bool isCancelled() const = 0;
};
