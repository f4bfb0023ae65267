#pragma once

// Start and end of the service library: the first and the last call into it.
class VLRInit
{
public:
    static void initUsingCrashlytics(bool crashReporting);
    static void shutdown();
};
