#include "sdk/remote/RemoteInit.h"

#include "sdk/remote/PendingSignOuts.h"

RemoteInit::RemoteInit(VLRInit& embedded)
    : m_embedded(embedded)
{ }

void RemoteInit::initUsingCrashlytics(bool crashReporting)
{
    m_embedded.initUsingCrashlytics(crashReporting);
}

void RemoteInit::shutdown()
{
    PendingSignOuts::waitForAll(std::chrono::seconds(1));
    m_embedded.shutdown();
}
