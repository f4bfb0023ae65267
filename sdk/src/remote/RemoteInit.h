#pragma once

#include "service/VLRInit.h"

// The embedded service's start and end, with a sign-out from a team server
// that is still on its way given up to a second to reach it first.
class RemoteInit : public VLRInit
{
public:
    explicit RemoteInit(VLRInit& embedded);

    void initUsingCrashlytics(bool crashReporting) override;
    void shutdown() override;

private:
    VLRInit& m_embedded;
};
