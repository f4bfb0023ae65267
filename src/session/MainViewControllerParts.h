#pragma once

#include "marketplace/MarketplacePage.h"
#include "preferences/PreferencesPage.h"
#include "session/Popover.h"
#include "session/TabBar.h"
#include "signin/LoginMfaPage.h"
#include "signin/LoginPage.h"
#include "transfers/TransfersPage.h"
#include "workspaces/FileDropPage.h"
#include "workspaces/WorkspacesPage.h"

#include <memory>

// The children of the main controller: the popover, its tab bar and one
// controller for each page. A part that does not exist is left empty, and
// every call on it does nothing.
struct MainViewControllerParts
{
    std::unique_ptr<Popover> popover;
    std::unique_ptr<TabBar> tabSelectorViewController;
    std::unique_ptr<LoginPage> loginViewController;
    std::unique_ptr<LoginMfaPage> loginMfaViewController;
    std::unique_ptr<TransfersPage> transfersViewController;
    std::unique_ptr<WorkspacesPage> workspacesViewController;
    std::unique_ptr<FileDropPage> fileDropViewController;
    std::unique_ptr<MarketplacePage> marketplaceViewController;
    std::unique_ptr<PreferencesPage> preferencesViewController;
};
