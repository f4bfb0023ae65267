#include "marketplace/MarketplaceTesting.h"

#include "app/VLRUserNotificationKeys.h"
#include "lists/ListSeparatorViewController.h"
#include "marketplace/PurchaseAlertViewController.h"
#include "marketplace/PurchaseViewController.h"

namespace {

// The flat list as one line: dividers by label, separators as "-", rows by
// identifier with "*" for up to date and "^" for an update.
QString describe(const MarketplaceViewController::Entries& entries)
{
    QStringList parts;
    for (const auto& entry : entries) {
        if (auto* divider = dynamic_cast<ListDividerViewController*>(entry.get()))
            parts.append(divider->label() ? divider->label()->stringValue() : QString::number(divider->type()));
        else if (dynamic_cast<ListSeparatorViewController*>(entry.get()))
            parts.append("-");
        else if (auto* row = dynamic_cast<InstallerViewController*>(entry.get()))
            parts.append(row->installer()->identifier() + (row->isUpToDate() ? "*" : "")
                         + (row->isUpdate() ? "^" : ""));
        else if (auto* alert = dynamic_cast<PurchaseAlertViewController*>(entry.get()))
            parts.append(alert->type() == PurchaseAlertViewController::Expired ? "EXPIRED" : "SOON");
        else if (auto* purchase = dynamic_cast<PurchaseViewController*>(entry.get()))
            parts.append(purchase->purchase()->product()->name());
    }
    return parts.join(' ');
}

InstallerViewController* rowOf(const MarketplaceViewController::Entries& entries, const QString& identifier)
{
    for (const auto& entry : entries)
        if (auto* row = dynamic_cast<InstallerViewController*>(entry.get());
            row && row->installer()->identifier() == identifier)
            return row;
    return nullptr;
}

} // namespace

TEST_F(MarketplaceTest, GroupsFollowTheirDeliveriesWithOneLongLivedRowPerInstaller)
{
    auto a = catalogueInstaller("a", "Alpha");
    auto b = catalogueInstaller("b", "Beta", "2.0", "1.0");
    auto c = catalogueInstaller("c", "Gamma", "1.0", QString());
    auto d = catalogueInstaller("d", "Delta", "3.0", "3.0");

    // The order of a change of session: groups before rows, so they come out
    // short and everything shows as installed.
    page.updateNotInstalled({c});
    page.updateNewInstallers({a});
    page.updateInstallerUpdates({b});
    page.updateInstallers({a, b, c, d});
    page.updatePurchases({});
    EXPECT_EQ(describe(page.installerViewControllers()), "");
    nextTurn();
    EXPECT_EQ(describe(page.installerViewControllers()), "INSTALLED a* - b* - c* - d* -");
    InstallerViewController* rowA = rowOf(page.installerViewControllers(), "a");

    // The library's next change of its lists, all in one turn: one rebuild.
    const int reports = owner.reports;
    page.updateNewInstallers({a});
    page.updateInstallerUpdates({b, catalogueInstaller("x", "Unknown")});
    page.updateNotInstalled({c});
    page.updateInstallers({catalogueInstaller("a", "Alpha again"), b, c, d});
    nextTurn();
    EXPECT_EQ(owner.reports, reports + 1);
    EXPECT_EQ(describe(page.installerViewControllers()), "NEW a UPDATES b^ NOT INSTALLED c INSTALLED d* -");
    EXPECT_EQ(rowOf(page.installerViewControllers(), "a"), rowA);
    EXPECT_EQ(rowA->installer(), a);
    EXPECT_EQ(owner.count, 2);
    EXPECT_EQ(page.tabSelectorViewController()->updatesButton()->badgeValue(), 2);

    // A dropped row shows in its group until that group comes again.
    page.updateInstallers({a, b, d});
    nextTurn();
    EXPECT_EQ(describe(page.installerViewControllers()), "NEW a UPDATES b^ NOT INSTALLED c INSTALLED d* -");
    page.updateNotInstalled({c});
    page.updateInstallerUpdates({});
    nextTurn();
    EXPECT_EQ(describe(page.installerViewControllers()), "NEW a INSTALLED b* - d* -");

    page.updateInstallers({});
    page.updateNewInstallers({});
    nextTurn();
    EXPECT_EQ(describe(page.installerViewControllers()), "");
    EXPECT_EQ(owner.count, 0);
}

TEST_F(MarketplaceTest, WhatIsNewIsAnnouncedOnceByTheCountsRule)
{
    auto a = catalogueInstaller("a", "Alpha");
    auto b = catalogueInstaller("b", "Beta");
    auto c = catalogueInstaller("c", "Gamma");
    const auto deliver = [this](const VLRInstallerList& all, const VLRInstallerList& fresh,
                                const VLRInstallerList& updates) {
        page.updateInstallers(all);
        page.updateNewInstallers(fresh);
        page.updateInstallerUpdates(updates);
        nextTurn();
    };

    // The singular hangs on the one update, and the update is not told.
    deliver({a, b, c}, {a, c}, {b});
    deliver({a, b, c}, {a, c}, {b});
    EXPECT_EQ(notificationTexts(), QStringList{"Thank You! | Your new purchase is available for download"});

    // A record that left and came back different is told again, an equal one not.
    auto b2 = catalogueInstaller("b", "Beta");
    auto c2 = catalogueInstaller("c", "Gamma");
    c->equalInstallers = {c2};
    deliver({a}, {}, {});
    deliver({a, b2, c2}, {}, {b2, c2});
    const auto update = fakes.notificationCenter->lastScheduledNotification();
    EXPECT_EQ(update->title() + " | " + update->informativeText(), "Update Available | Beta has an update");
    EXPECT_EQ(update->actionButtonTitle(), "Update");
    EXPECT_EQ(update->userInfo().value(VLRUserNotificationObjectIdentifierKey), "b");
    EXPECT_EQ(update->userInfo().value(VLRUserNotificationTypeKey), VLRUserNotificationTypeUpdateAvailable);

    // Signing out forgets what was told.
    page.setLoggedIn(false);
    deliver({a, b, c}, {}, {b, c});
    deliver({a, b, c}, {a, b, c}, {});
    EXPECT_EQ(notificationTexts().mid(2),
              (QStringList{"Updates Available | You have some updates in your Veluria account",
                           "Thank You! | Your new purchases are available for download"}));
}

TEST_F(MarketplaceTest, DownloadsStartFromRowsAndDividersButNotFromANotification)
{
    auto a = catalogueInstaller("a", "Alpha");
    auto b = catalogueInstaller("b", "Beta");
    auto busy = catalogueInstaller("c", "Gamma");
    busy->setOverallOperation(std::make_shared<FakeInstallerOperation>());
    for (const auto& installer : {a, b})
        installer->nextOperation = std::make_shared<FakeInstallerOperation>();
    page.updateInstallers({a, b, busy});
    page.updateNewInstallers({a, b, busy});
    page.updateInstallerUpdates({});
    nextTurn();

    page.downloadAndInstallInstallerWithID("a");
    EXPECT_EQ(a->log.count("downloadAndInstallLatestRevision"), 0);

    auto* newDivider = dynamic_cast<ListDividerViewController*>(page.installerViewControllers().first().get());
    ASSERT_NE(newDivider, nullptr);
    newDivider->buttonClicked();
    EXPECT_EQ(a->log.count("downloadAndInstallLatestRevision"), 1);
    EXPECT_EQ(b->log.count("downloadAndInstallLatestRevision"), 1);
    EXPECT_EQ(busy->log.count("downloadAndInstallLatestRevision"), 0);
    EXPECT_EQ(rowOf(page.installerViewControllers(), "a")->operation(), a->nextOperation);

    // The library now says they run: a second click starts nothing more.
    a->setOverallOperation(a->nextOperation);
    b->setOverallOperation(b->nextOperation);
    newDivider->buttonClicked();
    rowOf(page.installerViewControllers(), "b")->onInstallButton();
    EXPECT_EQ(a->log.count("downloadAndInstallLatestRevision") + b->log.count("downloadAndInstallLatestRevision"), 2);
}

TEST_F(MarketplaceTest, TheCardWarningHasAThirtyDayWindowAndIsToldWhenItComesUp)
{
    const QDateTime now = fakes.now;
    const QDateTime renews = now.addDays(90);
    auto paypal = cardPurchase("Paid otherwise", renews, now.addDays(-5), "https://example.com/paypal");
    paypal->setPaymentType("paypal");
    auto noExpiry = cardPurchase("No expiry", renews, QDateTime(), "https://example.com/none");
    auto card = cardPurchase("Suite", renews, now.addSecs(MarketplaceViewController::CardWarningSeconds),
                             "https://example.com/manage/suite");
    const auto deliver = [&] {
        page.updatePurchases({paypal, noExpiry, card});
        return describe(page.purchaseViewControllers());
    };

    EXPECT_EQ(deliver(), "- Paid otherwise - No expiry - Suite -");
    EXPECT_FALSE(page.purchaseWarning());

    card->setCcExpiresOn(now.addSecs(MarketplaceViewController::CardWarningSeconds - 1));
    EXPECT_EQ(deliver(), "- SOON - Paid otherwise - No expiry - Suite -");
    card->setCcExpiresOn(now);
    EXPECT_EQ(deliver(), "- SOON - Paid otherwise - No expiry - Suite -");
    card->setCcExpiresOn(now.addSecs(-1));
    EXPECT_EQ(deliver(), "- EXPIRED - Paid otherwise - No expiry - Suite -");
    ASSERT_EQ(notificationTexts(), QStringList{"Your credit card is about to expire! | Click here to update it."});
    const auto told = fakes.notificationCenter->lastScheduledNotification();
    EXPECT_EQ(told->userInfo().value(VLRUserNotificationObjectIdentifierKey), "https://example.com/manage/suite");
    EXPECT_EQ(told->userInfo().value(VLRUserNotificationTypeKey), VLRUserNotificationTypeCCAboutToExpire);
    EXPECT_EQ(owner.count, 1);
    EXPECT_TRUE(owner.warning);
    EXPECT_TRUE(page.tabSelectorViewController()->purchasesButton()->badgeIsWarning());

    // Gone and back: told again. An about-to-expire card that stands first
    // hides an expired one behind it.
    page.updatePurchases({});
    EXPECT_EQ(owner.count, 0);
    auto soon = cardPurchase("Soon", renews, now.addDays(29), "https://example.com/manage/soon");
    page.updatePurchases({soon, card});
    EXPECT_EQ(describe(page.purchaseViewControllers()), "- SOON - Soon - Suite -");
    EXPECT_EQ(notificationTexts().size(), 2);
    page.updatePurchases({card});
    EXPECT_EQ(notificationTexts().size(), 2);

    page.updatePurchases({});
    page.updatePurchases({card});
    EXPECT_EQ(fakes.notificationCenter->lastScheduledNotification()->title(), "Your credit card has expired!");
}

TEST_F(MarketplaceTest, TheLoadingPictureFollowsTheOwnersAnswer)
{
    owner.loading = true;
    page.updateState();
    EXPECT_EQ(page.state(), 1);
    EXPECT_FALSE(page.backgroundView()->isHidden());
    EXPECT_FALSE(page.backgroundView()->image().isNull());
    owner.loading = false;
    page.updatePurchases({});
    EXPECT_EQ(page.state(), 0);
    EXPECT_TRUE(page.backgroundView()->isHidden());

    page.showUpdatesTab();
    EXPECT_EQ(page.tabView()->currentIndex(), 1);
}
