#pragma once

#include "widgets/VLRButton.h"
#include "widgets/VLRView.h"

#include <QObject>
#include <QPointer>

class MarketplaceTabSelectorDelegate;

// The two-button bar over the marketplace's pages, each button with a badge.
// Every selection, also of the tab already selected, reaches the delegate.
class MarketplaceTabSelectorViewController : public QObject
{
    Q_OBJECT

public:
    enum Tab : qint64 {
        PurchasesTab = 1,
        // Shown to the user as updates.
        InstallersTab = 2,
    };

    // Inside the one-point border of the popover's page.
    static constexpr int BarWidth = 358;
    static constexpr int BarHeight = 32;

    MarketplaceTabSelectorViewController() = default;
    ~MarketplaceTabSelectorViewController() override;

    // Built at the first call; building selects the purchases tab before any
    // delegate can hear it.
    QWidget* view();

    MarketplaceTabSelectorDelegate* delegate() const { return m_delegate; }
    void setDelegate(MarketplaceTabSelectorDelegate* delegate) { m_delegate = delegate; }

    VLRButton* purchasesButton() const { return m_purchasesButton; }
    VLRButton* updatesButton() const { return m_updatesButton; }

    // As a click on that tab's button would.
    void selectTab(qint64 tab);
    void tabButtonClicked(VLRButton* sender);

    // 0 hides the badge.
    void showBadgeForInstallerCount(qint64 count);
    // The look first, then the count, so that the badge is built in its look.
    void showBadgeForPurchaseCountIsWarning(qint64 count, bool isWarning);

private:
    void loadView();
    void setUpButton(VLRButton* button);
    void setSelectedTab(qint64 tab);

    QPointer<VLRView> m_view;
    QPointer<VLRButton> m_purchasesButton;
    QPointer<VLRButton> m_updatesButton;
    MarketplaceTabSelectorDelegate* m_delegate = nullptr;
};
