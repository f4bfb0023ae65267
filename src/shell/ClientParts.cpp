#include "shell/ClientParts.h"

#include "marketplace/MarketplaceViewController.h"
#include "preferences/PreferencesViewController.h"
#include "session/TabSelectorViewController.h"
#include "session/VLRPopover.h"
#include "signin/LoginMfaViewController.h"
#include "signin/LoginViewController.h"
#include "transfers/TransfersViewController.h"
#include "workspaces/FileDropViewController.h"
#include "workspaces/WorkspacesViewController.h"

MainViewControllerParts makeClientParts(const ClientServices& services)
{
    // Each page joins here as it is built; until then its part stays empty
    // and the main controller leaves it out.
    MainViewControllerParts parts;
    parts.popover = std::make_unique<VLRPopover>();
    parts.tabSelectorViewController = std::make_unique<TabSelectorViewController>();
    parts.loginViewController = std::make_unique<LoginViewController>(services);
    parts.loginMfaViewController = std::make_unique<LoginMfaViewController>();
    parts.marketplaceViewController = std::make_unique<MarketplaceViewController>(services);
    parts.workspacesViewController = std::make_unique<WorkspacesViewController>(services);
    parts.fileDropViewController = std::make_unique<FileDropViewController>(services);
    parts.transfersViewController = std::make_unique<TransfersViewController>(services);
    parts.preferencesViewController = std::make_unique<PreferencesViewController>(services);
    return parts;
}
