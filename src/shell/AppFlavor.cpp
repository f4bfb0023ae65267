#include "shell/AppFlavor.h"

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
    return hasPurchases && !hasWorkspace ? 3 : 2;
}

std::optional<QVariantMap> AppFlavor::loginDefaults()
{
    return std::nullopt;
}

QColor AppFlavor::mainAppColor()
{
    return QColor::fromRgbF(0.9490196078431372f, 0.403921568627451f, 0.13725490196078433f, 1.0f);
}

QColor AppFlavor::badgeColor()
{
    return QColor::fromRgbF(0.9058823529411765f, 0.5058823529411764f, 0.4117647058823529f, 1.0f);
}

QColor AppFlavor::errorColor()
{
    return badgeColor();
}
