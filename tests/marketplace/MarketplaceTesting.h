#pragma once

#include "app/VLRUserDefaultsKeys.h"
#include "fakes/FakeClientServices.h"
#include "fakes/FakeInstaller.h"
#include "fakes/FakeProduct.h"
#include "fakes/FakePurchase.h"
#include "fakes/FakeRevision.h"
#include "fakes/FakeVendor.h"
#include "marketplace/MarketplaceViewController.h"
#include "marketplace/MarketplaceViewControllerDelegate.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// An installer as the catalogue gives it: a vendor's product, a latest
// revision and, where given, the version on this machine.
inline std::shared_ptr<FakeInstaller> catalogueInstaller(const QString& identifier, const QString& name,
                                                         const QString& latest = "2.0",
                                                         const QString& installed = QString())
{
    auto vendor = std::make_shared<FakeVendor>();
    vendor->setName("Acme Tools");
    auto product = std::make_shared<FakeProduct>();
    product->setName(name);
    product->setVendor(vendor);
    auto revision = std::make_shared<FakeRevision>();
    revision->setVersionDisplay(latest);
    auto installer = FakeInstaller::make(identifier, name);
    installer->setFirstProduct(product);
    installer->setCurrentRevision(revision);
    installer->setInstalledVersionString(installed);
    return installer;
}

inline std::shared_ptr<FakePurchase> cardPurchase(const QString& name, const QDateTime& renewsAt,
                                                  const QDateTime& cardExpiresOn, const QString& manage)
{
    auto product = std::make_shared<FakeProduct>();
    product->setName(name);
    auto purchase = std::make_shared<FakePurchase>();
    purchase->setProduct(product);
    purchase->setRenewsAt(renewsAt);
    purchase->setPaymentType("credit_card");
    purchase->setCcExpiresOn(cardExpiresOn);
    purchase->setManageURL(QUrl(manage));
    return purchase;
}

// The owner as the page sees it: it counts badge reports, one for each
// rebuild of the installers list or delivery of purchases.
struct RecordingMarketplaceOwner : MarketplaceViewControllerDelegate
{
    int reports = 0;
    qint64 count = 0;
    bool warning = false;
    bool loading = false;
    void marketplaceViewControllerDidChangeUpdateCountTo(MarketplacePage*, qint64 c, bool isWarning) override
    {
        ++reports;
        count = c;
        warning = isWarning;
    }
    bool marketplaceViewControllerLoading() override { return loading; }
};

// The page with the test double's services, notifications switched on and a
// clock that stands still until the test moves it.
class MarketplaceTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        fakes.defaults->setBool(true, VLRUserDefaultsKeyShowNotifications);
        page.setDelegate(&owner);
        page.view();
    }

    // The next turn of the event loop, where the queued rebuild runs.
    static void nextTurn() { QCoreApplication::sendPostedEvents(); }

    QStringList notificationTexts() const
    {
        QStringList texts;
        for (const auto& n : fakes.notificationCenter->scheduledNotifications())
            texts.append(n->title() + " | " + n->informativeText());
        return texts;
    }

    QTemporaryDir settingsFolder;
    FakeClientServices fakes{settingsFolder.path()};
    RecordingMarketplaceOwner owner;
    MarketplaceViewController page{fakes.services(), [this] { return fakes.now; }};
};
