#pragma once

#include <QtGlobal>

class MarketplacePage;

class MarketplaceViewControllerDelegate
{
public:
    virtual ~MarketplaceViewControllerDelegate() = default;
    virtual void marketplaceViewControllerDidChangeUpdateCountTo(MarketplacePage* controller, qint64 count,
                                                                 bool isWarning) = 0;
    virtual bool marketplaceViewControllerLoading() = 0;
};
