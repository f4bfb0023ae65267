#pragma once

#include <QtGlobal>

class MarketplaceTabSelectorViewController;

class MarketplaceTabSelectorDelegate
{
public:
    virtual ~MarketplaceTabSelectorDelegate() = default;
    virtual void marketplaceTabSelectorDidSelectTab(MarketplaceTabSelectorViewController* selector, qint64 tab) = 0;
};
