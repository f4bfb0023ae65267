#pragma once

#include <QtGlobal>

class QWidget;
class TabSelectorViewControllerDelegate;

// The popover's tab bar as its owner drives it. Tab numbers: 0 login, 1 file
// drop, 2 workspaces, 3 marketplace, 4 transfers, 5 preferences.
class TabBar
{
public:
    virtual ~TabBar() = default;
    virtual QWidget* view() = 0;
    // Must be set before the bar's view loads: loading selects tab 0.
    virtual void setDelegate(TabSelectorViewControllerDelegate* delegate) = 0;

    virtual int selectedTab() const = 0;
    virtual void selectTab(int tab) = 0;
    virtual void showActiveUploads(bool uploads, bool downloads) = 0;
    virtual void setBadgeValue(qint64 value, int forTab, bool isWarning) = 0;
    virtual void enableDisableTabs() = 0;
};
