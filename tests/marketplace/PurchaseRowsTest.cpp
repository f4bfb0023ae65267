#include "marketplace/MarketplaceTesting.h"

#include "marketplace/PurchaseAlertViewController.h"
#include "marketplace/PurchaseViewController.h"

#include <QEnterEvent>
#include <QLocale>

TEST_F(MarketplaceTest, APurchaseRowTellsRenewalExpiryAndLateDetails)
{
    const QDateTime now = fakes.now;
    const auto clock = [this] { return fakes.now; };
    auto purchase = cardPurchase("Suite", now.addDays(10), now.addYears(1), "https://example.com/manage");
    auto product = std::static_pointer_cast<FakeProduct>(purchase->product());
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    PurchaseViewController row(purchase, fakes.desktop.get(), clock);
    QLocale::setDefault(QLocale::system());
    row.view();
    EXPECT_EQ(row.productNameField()->stringValue(), "Suite");
    EXPECT_EQ(row.renewsAtField()->stringValue(), "Renews: December 2, 2026");
    // The longest long dates fit a popover's row beside the manage button.
    row.view()->resize(344, 111);
    row.view()->show();
    purchase->setRenewsAt(QDateTime(QDate(2027, 9, 30), QTime(12, 0)));
    const QFontMetrics metrics(row.renewsAtField()->attributedStringValue().font);
    EXPECT_LE(metrics.horizontalAdvance(row.renewsAtField()->stringValue()), row.renewsAtField()->width());
    purchase->setCanceled(true);
    purchase->setRenewsAt(now.addDays(11));
    EXPECT_TRUE(row.renewsAtField()->stringValue().startsWith("Expires: "));
    purchase->setRenewsAt(now.addSecs(-1));
    EXPECT_EQ(row.renewsAtField()->stringValue(), "EXPIRED");

    // What arrives late fills in; what goes missing leaves the old text.
    auto vendor = std::make_shared<FakeVendor>();
    product->setVendor(vendor);
    product->setImage(QImage(12, 12, QImage::Format_ARGB32));
    EXPECT_EQ(row.productImageView()->image().width(), 12);
    product->setName(QString());
    EXPECT_EQ(row.productNameField()->stringValue(), "Suite");

    QEnterEvent entered(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
    QCoreApplication::sendEvent(row.view(), &entered);
    EXPECT_FALSE(row.manageButton()->isHidden());
    row.manageButton()->click();
    QEvent left(QEvent::Leave);
    QCoreApplication::sendEvent(row.view(), &left);
    EXPECT_TRUE(row.manageButton()->isHidden());
    EXPECT_EQ(fakes.desktop->openedURLs(), QList<QUrl>{QUrl("https://example.com/manage")});

    // Without a product only the date is watched.
    auto bare = std::make_shared<FakePurchase>();
    bare->setRenewsAt(now.addDays(1));
    {
        PurchaseViewController bareRow(bare, fakes.desktop.get(), clock);
        EXPECT_EQ(bare->observationCount(), 1);
    }
    EXPECT_EQ(bare->observationCount(), 0);
}

TEST_F(MarketplaceTest, AnAlertOpensOnlyAWebPage)
{
    PurchaseAlertViewController expired(PurchaseAlertViewController::Expired, QUrl("https://example.com/card"),
                                        fakes.desktop.get());
    expired.view();
    EXPECT_EQ(expired.alertText()->stringValue(), "Your credit card has expired.");
    expired.alertButton()->click();
    PurchaseAlertViewController sneaky(7, QUrl("file:///etc/passwd"), fakes.desktop.get());
    sneaky.view();
    EXPECT_EQ(sneaky.alertText()->stringValue(), "Your credit card is about to expire.");
    sneaky.onAlertButton();
    EXPECT_EQ(fakes.desktop->openedURLs(), QList<QUrl>{QUrl("https://example.com/card")});
}
