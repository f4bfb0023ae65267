#include "service/VLRInit.h"

#include "service/VLRLogFormat.h"

#include "accounts/SessionRegistry.h"
#include "base/CrashReporter.h"
#include "transfers/Reaper.h"

#include <QFileInfo>

void VLRInit::initUsingCrashlytics(bool crashReporting)
{
    if (crashReporting)
        CrashReporter::install(QFileInfo(vlr::logFilePath()).path());
    VLRLogFormat(4, QStringLiteral("VeluriaSDK"), "Veluria service library started");
}

void VLRInit::shutdown()
{
    SessionRegistry::endAll();
    Reaper::waitForAll(std::chrono::seconds(10));
    CrashReporter::uninstall();
    VLRLogFormat(4, QStringLiteral("VeluriaSDK"), "Veluria service library stopped");
}
