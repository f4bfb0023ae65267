#include "sdk/local/LocalInit.h"

#include "service/VLRLogHandler.h"

#include "sdk/accounts/SessionRegistry.h"
#include "sdk/base/CrashReporter.h"
#include "sdk/base/LibraryLog.h"
#include "sdk/transfers/Reaper.h"

#include <QFileInfo>

void LocalInit::initUsingCrashlytics(bool crashReporting)
{
    if (crashReporting)
        CrashReporter::install(QFileInfo(vlr::logFilePath()).path());
    qCInfo(lcLibrary, "Veluria service library started");
}

void LocalInit::shutdown()
{
    SessionRegistry::endAll();
    Reaper::waitForAll(std::chrono::seconds(10));
    CrashReporter::uninstall();
    qCInfo(lcLibrary, "Veluria service library stopped");
}
