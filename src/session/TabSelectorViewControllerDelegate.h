#pragma once

#include <QStringList>

class TabBar;

// What the tab bar asks of its owner. Only selecting asks for permission.
class TabSelectorViewControllerDelegate
{
public:
    virtual ~TabSelectorViewControllerDelegate() = default;
    virtual bool tabSelectorViewControllerTabSupported(TabBar* controller, int tab) = 0;
    virtual bool tabSelectorViewControllerShouldSelectTab(TabBar* controller, int tab) = 0;
    virtual void tabSelectorViewControllerDidSelectTab(TabBar* controller, int tab) = 0;
    virtual void tabSelectorViewControllerDidReceiveDroppedFiles(TabBar* controller, const QStringList& files) = 0;
};
