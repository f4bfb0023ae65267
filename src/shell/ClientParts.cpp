#include "shell/ClientParts.h"

#include "session/TabSelectorViewController.h"
#include "session/VLRPopover.h"
#include "signin/LoginMfaViewController.h"
#include "signin/LoginViewController.h"
#include "preferences/PreferencesViewController.h"

MainViewControllerParts makeClientParts()
{
    // Each page joins here as it is built; until then its part stays empty
    // and the main controller leaves it out.
    MainViewControllerParts parts;
    parts.popover = std::make_unique<VLRPopover>();
    parts.tabSelectorViewController = std::make_unique<TabSelectorViewController>();
    parts.loginViewController = std::make_unique<LoginViewController>();
    parts.loginMfaViewController = std::make_unique<LoginMfaViewController>();
    parts.preferencesViewController = std::make_unique<PreferencesViewController>();
    return parts;
}
