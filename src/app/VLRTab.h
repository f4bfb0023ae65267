#pragma once

// The pages of the popover's tab view, by number. The tab bar shows 1 to 5;
// the second-factor page is known to the tab view alone.
namespace VLRTab {

enum Tab : int {
    Login = 0,
    FileDrop = 1,
    Workspaces = 2,
    Marketplace = 3,
    Transfers = 4,
    Preferences = 5,
    SecondFactor = 6,
};

} // namespace VLRTab
