#pragma once

#include "service/VLRTypes.h"

#include <QString>

class QWidget;
class MarketplaceViewControllerDelegate;

// The marketplace tab as its owner drives it.
class MarketplacePage
{
public:
    virtual ~MarketplacePage() = default;
    virtual QWidget* view() = 0;
    virtual void setDelegate(MarketplaceViewControllerDelegate* delegate) = 0;

    virtual void updateInstallers(const VLRInstallerList& installers) = 0;
    virtual void updateInstallerUpdates(const VLRInstallerList& installers) = 0;
    virtual void updateNewInstallers(const VLRInstallerList& installers) = 0;
    virtual void updateNotInstalled(const VLRInstallerList& installers) = 0;
    virtual void updatePurchases(const VLRPurchaseList& purchases) = 0;
    virtual void setLoggedIn(bool loggedIn) = 0;
    virtual void updateState() = 0;
    virtual void showUpdatesTab() = 0;
    virtual void downloadAndInstallInstallerWithID(const QString& identifier) = 0;
};
