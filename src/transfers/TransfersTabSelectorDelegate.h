#pragma once

class TransfersTabSelectorViewController;

// The list chosen above the tables: 1 uploads, 2 downloads, 3 completed.
class TransfersTabSelectorDelegate
{
public:
    virtual ~TransfersTabSelectorDelegate() = default;
    virtual void transfersTabSelectorDidSelectTab(TransfersTabSelectorViewController* selector, int tab) = 0;
};
