#include "LocalInit.h"

#include "service/VLRLogFormat.h"

#include "CrashReporter.h"
#include "Reaper.h"
#include "SessionRegistry.h"

#include <QFileInfo>

void LocalInit::initUsingCrashlytics(bool crashReporting)
{
    if (crashReporting)
        CrashReporter::install(QFileInfo(vlr::logFilePath()).path());
    VLRLogFormat(4, QStringLiteral("VeluriaSDK"), "Veluria service library started");
}

void LocalInit::shutdown()
{
    SessionRegistry::endAll();
    Reaper::waitForAll(std::chrono::seconds(10));
    CrashReporter::uninstall();
    VLRLogFormat(4, QStringLiteral("VeluriaSDK"), "Veluria service library stopped");
}
