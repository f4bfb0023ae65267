#pragma once

#include "service/VLRInit.h"

// Start: the crash log beside the log file. End: every session ends and the
// helper threads are waited for, ten seconds at most.
class LocalInit : public VLRInit
{
public:
    void initUsingCrashlytics(bool crashReporting) override;
    void shutdown() override;
};
