#include "app/AppFlavor.h"
#include "app/VLRColors.h"
#include "lists/ListDividerViewController.h"
#include "lists/ListDividerViewControllerDelegate.h"
#include "lists/ListTableView.h"
#include "lists/ListTableViewDataSource.h"
#include "lists/MarketplaceTabSelectorDelegate.h"
#include "lists/MarketplaceTabSelectorViewController.h"
#include "lists/RowViewController.h"
#include "widgets/VLRBadgeView.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRTextField.h"
#include "widgets/VLRView.h"

#include <QScrollBar>

#include <gtest/gtest.h>

#include <vector>

namespace {

struct SelectionLog : MarketplaceTabSelectorDelegate
{
    std::vector<qint64> tabs;
    void marketplaceTabSelectorDidSelectTab(MarketplaceTabSelectorViewController*, qint64 tab) override
    {
        tabs.push_back(tab);
    }
};

struct ClickLog : ListDividerViewControllerDelegate
{
    std::vector<ListDividerViewController*> clicks;
    void listDividerViewControllerHadButtonClick(ListDividerViewController* divider) override
    {
        clicks.push_back(divider);
    }
};

struct PlainRow : RowViewController
{
    QWidget* loadView() override { return makeRootView(); }
};

// Rows of 50, each view counted as it is built; the table's viewport ends up
// holding them, as it holds the views of a list's controllers.
struct CountingSource : ListTableViewDataSource
{
    std::vector<QPointer<QWidget>> views;
    int built = 0;
    explicit CountingSource(int rows)
        : views(size_t(rows))
    { }
    int numberOfRowsInTableView(ListTableView*) override { return int(views.size()); }
    int tableViewHeightOfRow(ListTableView*, int) override { return 50; }
    QWidget* tableViewViewForRow(ListTableView*, int row) override
    {
        if (!views[size_t(row)]) {
            views[size_t(row)] = new QWidget();
            ++built;
        }
        return views[size_t(row)];
    }
};

} // namespace

TEST(MarketplaceTabSelector, FirstSelectionReachesNobodyAndEveryClickReports)
{
    MarketplaceTabSelectorViewController selector;
    SelectionLog log;
    selector.view();
    selector.setDelegate(&log);
    EXPECT_TRUE(log.tabs.empty());
    EXPECT_EQ(selector.purchasesButton()->textColor(), AppFlavor::mainAppColor());

    selector.updatesButton()->click();
    selector.updatesButton()->click();
    selector.selectTab(MarketplaceTabSelectorViewController::PurchasesTab);
    EXPECT_EQ(log.tabs, (std::vector<qint64>{2, 2, 1}));
    EXPECT_EQ(selector.purchasesButton()->textColor(), AppFlavor::mainAppColor());
    EXPECT_EQ(selector.updatesButton()->textColor(), VLRColors::grey(151));
}

TEST(MarketplaceTabSelector, BadgesCountAndTheWarningLookIsRebuiltForTheSameCount)
{
    MarketplaceTabSelectorViewController selector;
    selector.showBadgeForInstallerCount(3);
    EXPECT_TRUE(selector.updatesButton()->badgeView()->isVisibleTo(selector.view()));
    selector.showBadgeForInstallerCount(0);
    EXPECT_FALSE(selector.updatesButton()->badgeView()->isVisibleTo(selector.view()));

    selector.showBadgeForPurchaseCountIsWarning(1, false);
    VLRBadgeView* plain = selector.purchasesButton()->badgeView();
    selector.showBadgeForPurchaseCountIsWarning(1, true);
    VLRBadgeView* warning = selector.purchasesButton()->badgeView();
    ASSERT_NE(plain, warning);
    EXPECT_TRUE(warning->isWarning());
    EXPECT_EQ(warning->badgeValue(), 1);
}

TEST(ListDivider, TypeGivesLabelAndButtonAndTheButtonReportsWhateverTheType)
{
    ClickLog log;
    ListDividerViewController updates;
    updates.setType(ListDividerViewController::Updates);
    updates.setDelegate(&log);
    updates.view();
    EXPECT_EQ(updates.label()->stringValue(), "UPDATES");
    EXPECT_FALSE(updates.button()->isHidden());
    updates.button()->click();

    ListDividerViewController unknown;
    unknown.setType(10);
    unknown.setDelegate(&log);
    unknown.view();
    EXPECT_EQ(unknown.label()->stringValue(), "");
    EXPECT_TRUE(unknown.button()->isHidden());
    unknown.buttonClicked();
    EXPECT_EQ(log.clicks, (std::vector<ListDividerViewController*>{&updates, &unknown}));

    // The type is read when the view is built, never again.
    updates.setType(ListDividerViewController::Today);
    EXPECT_EQ(updates.label()->stringValue(), "UPDATES");
}

TEST(RowViewController, DarkBackgroundBuildsTheViewAndColoursIt)
{
    PlainRow row;
    EXPECT_FALSE(row.isViewLoaded());
    row.setDarkBackground(false);
    EXPECT_EQ(static_cast<VLRView*>(row.view())->backgroundColor(), VLRColors::grey(250));
    row.setDarkBackground(true);
    EXPECT_EQ(static_cast<VLRView*>(row.view())->backgroundColor(), VLRColors::grey(233));
}

TEST(ListTableView, BuildsOnlyTheViewsInSightAndFollowsTheScroll)
{
    CountingSource source(1000);
    ListTableView table;
    table.resize(300, 200);
    table.show();
    table.setDataSource(&source);
    table.reloadData();
    EXPECT_EQ(source.built, 4);
    ASSERT_EQ(table.visibleViews().size(), 4);
    EXPECT_EQ(table.visibleViews()[1]->geometry(), QRect(0, 50, table.viewport()->width(), 50));

    table.verticalScrollBar()->setValue(49975);
    EXPECT_EQ(table.verticalScrollBar()->maximum(), 50000 - table.viewport()->height());
    EXPECT_TRUE(source.views.front()->isHidden());
    EXPECT_EQ(table.visibleViews().back(), source.views.back());
    EXPECT_LE(source.built, 9);

    source.views.resize(2);
    table.reloadData();
    EXPECT_EQ(table.verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(table.visibleViews().size(), 2);
}
