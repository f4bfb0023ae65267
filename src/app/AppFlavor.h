#pragma once

#include <QColor>
#include <QVariantMap>

#include <optional>

// The features of this build, fixed when it is compiled. Callers always ask
// here and never assume a value.
class AppFlavor
{
public:
    AppFlavor() = delete;

    static bool supportsTabType(int tabType);
    static bool supportsArchiveMode();
    static bool supportsAutoRevisionedDownloads();
    static bool supportsAnimatedStatusIcon();
    static bool supportsMarketplace();
    static bool defaultWorkspaceURLIsAssets();
    // The first tab after a sign-in: marketplace for a user with purchases
    // and no workspace, workspaces otherwise.
    static int initialTab(bool hasPurchases, bool hasWorkspace);
    // Credentials ("environment", "email", "password") that replace the
    // stored ones at a silent sign-in; none in this build.
    static std::optional<QVariantMap> loginDefaults();
    static QColor mainAppColor();
    static QColor badgeColor();
    static QColor errorColor();
};
