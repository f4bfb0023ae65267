#include "session/LocalInit.h"

#include "service/VLRLogHandler.h"

#include "accounts/SessionRegistry.h"
#include "base/CrashReporter.h"
#include "base/LibraryLog.h"
#include "transfers/Reaper.h"

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
