#include "app/AppFlavor.h"

#include "app/VLRColors.h"
#include "app/VLRTab.h"

bool AppFlavor::supportsTabType(int)
{
    return true;
}

bool AppFlavor::supportsArchiveMode()
{
    return false;
}

bool AppFlavor::supportsAutoRevisionedDownloads()
{
    return true;
}

bool AppFlavor::supportsAnimatedStatusIcon()
{
    return true;
}

bool AppFlavor::supportsMarketplace()
{
    return true;
}

bool AppFlavor::defaultWorkspaceURLIsAssets()
{
    return false;
}

int AppFlavor::initialTab(bool hasPurchases, bool hasWorkspace)
{
    return hasPurchases && !hasWorkspace ? VLRTab::Marketplace : VLRTab::Workspaces;
}

std::optional<QVariantMap> AppFlavor::loginDefaults()
{
    return std::nullopt;
}

// The kit keeps the numbers, so that it stands without the shell.
QColor AppFlavor::mainAppColor()
{
    return VLRColors::mainAppColor();
}

QColor AppFlavor::badgeColor()
{
    return VLRColors::badgeColor();
}

QColor AppFlavor::errorColor()
{
    return badgeColor();
}
