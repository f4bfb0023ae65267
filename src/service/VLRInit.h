#pragma once

// Start and end of the service library: the first and the last call into it.
class VLRInit
{
public:
    virtual ~VLRInit() = default;
    virtual void initUsingCrashlytics(bool crashReporting) = 0;
    virtual void shutdown() = 0;
};
