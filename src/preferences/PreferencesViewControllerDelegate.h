#pragma once

#include <QtGlobal>

class PreferencesPage;

class PreferencesViewControllerDelegate
{
public:
    virtual ~PreferencesViewControllerDelegate() = default;
    virtual bool willVeluriaLaunchAtStartup() = 0;
    virtual bool preferencesViewControllerWantsVeluriaLaunchedAtStartup(PreferencesPage* controller, bool launch) = 0;
    virtual void preferencesViewControllerDidSetDownloadCacheSize(PreferencesPage* controller, qint64 bytes) = 0;
    virtual void preferencesViewControllerDidModifyArchiveMode(PreferencesPage* controller, bool archiveMode) = 0;
    virtual void preferencesViewControllerWantsLogIn(PreferencesPage* controller) = 0;
    virtual void preferencesViewControllerWantsLogOut(PreferencesPage* controller) = 0;
    virtual void preferencesViewControllerWantsHelp(PreferencesPage* controller) = 0;
    virtual void preferencesViewControllerWantsQuit(PreferencesPage* controller) = 0;
};
