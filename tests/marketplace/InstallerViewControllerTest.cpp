#include "marketplace/MarketplaceTesting.h"

#include "widgets/VLRImageCatalogue.h"

#include <QEnterEvent>

namespace {

void hover(InstallerViewController& row, bool inside)
{
    QEnterEvent entered(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
    QEvent left(QEvent::Leave);
    QCoreApplication::sendEvent(row.view(), inside ? static_cast<QEvent*>(&entered) : &left);
}

bool shows(const QPixmap& shown, const char* name)
{
    return shown.cacheKey() == VLRImageCatalogue::imageNamed(name).cacheKey();
}

} // namespace

TEST_F(MarketplaceTest, AnInstallerRowShowsVersionsIconAndTheButtonByState)
{
    auto nameless = FakeInstaller::make("n", QString());
    InstallerViewController bare(nameless, fakes.notifications.get());
    bare.view();
    EXPECT_EQ(bare.nameField()->stringValue(), "-");
    EXPECT_EQ(bare.nameField()->toolTip(), "-");
    EXPECT_EQ(bare.versionField()->stringValue(), "Version: 0.0");

    auto installer = catalogueInstaller("t", "Tool.app", "2.0");
    installer->setImageURL(QUrl("https://example.com/tool.png"));
    auto product = std::static_pointer_cast<FakeProduct>(installer->firstProduct());
    product->setImage(QImage(8, 8, QImage::Format_ARGB32));
    InstallerViewController row(installer, fakes.notifications.get());
    row.setIsUpdate(true);
    row.view()->resize(360, 111);
    EXPECT_EQ(row.nameField()->stringValue(), "Tool");
    EXPECT_EQ(row.manufacturerField()->stringValue(), "Acme Tools");
    // Waits for its own picture rather than the product's.
    EXPECT_TRUE(row.iconView()->image().isNull());
    installer->setImage(QImage(16, 16, QImage::Format_ARGB32));
    EXPECT_EQ(row.iconView()->image().width(), 16);

    EXPECT_EQ(row.versionField()->stringValue(), "Version: 2.0");
    EXPECT_TRUE(row.latestVersionField()->isHidden());
    const int nameTop = row.nameField()->y();
    installer->setInstalledVersionString("1.5");
    EXPECT_EQ(row.versionField()->stringValue(), "Version: 1.5");
    EXPECT_EQ(row.latestVersionField()->stringValue(), "Latest: 2.0");
    EXPECT_FALSE(row.latestVersionField()->isHidden());
    EXPECT_EQ(row.nameField()->y(), nameTop - 8);

    EXPECT_TRUE(row.installButton()->isHidden());
    hover(row, true);
    EXPECT_FALSE(row.installButton()->isHidden());
    EXPECT_TRUE(shows(row.installButton()->defaultImage(), "marketplace_update_inactive"));
    row.setIsUpdate(false);
    EXPECT_TRUE(shows(row.installButton()->defaultImage(), "marketplace_install_inactive"));
    row.setIsUpToDate(true);
    EXPECT_TRUE(row.installButton()->isHidden());
    hover(row, false);
    hover(row, true);
    EXPECT_TRUE(row.installButton()->isHidden());
}

TEST_F(MarketplaceTest, AnInstallerRowFollowsItsOperationToOneEnd)
{
    auto installer = catalogueInstaller("t", "Tool.app");
    InstallerViewController row(installer, fakes.notifications.get());
    row.view();
    auto download = std::make_shared<FakeInstallerOperation>();
    installer->setDownloadOperation(download);
    auto operation = std::make_shared<FakeInstallerOperation>();
    row.monitorProgress(operation);
    row.monitorProgress(std::make_shared<FakeInstallerOperation>());
    EXPECT_EQ(row.operation(), operation);
    EXPECT_EQ(row.progressField()->stringValue(), "QUEUED");
    EXPECT_TRUE(row.cancelButton()->isHidden());
    hover(row, true);
    EXPECT_FALSE(row.cancelButton()->isHidden());
    EXPECT_TRUE(row.installButton()->isHidden());

    download->setFractionCompleted(0.4);
    operation->setFractionCompleted(0.4);
    EXPECT_EQ(row.progressField()->stringValue(), "40%");
    row.cancelButton()->click();
    EXPECT_TRUE(operation->cancelled);
    EXPECT_EQ(row.progressField()->stringValue(), "40%");
    operation->setFractionCompleted(0.5);
    EXPECT_EQ(row.progressField()->stringValue(), "CANCELING");
    operation->setError(vlr::makeError(vlr::NSCocoaErrorDomain, vlr::NSUserCancelledError, "Cancelled"));
    EXPECT_EQ(row.operation(), nullptr);
    EXPECT_TRUE(row.progressField()->isHidden());
    EXPECT_FALSE(row.installButton()->isHidden());
    EXPECT_TRUE(fakes.notificationCenter->scheduledNotifications().empty());

    // Installing cannot be cancelled; error and finished both change, one end.
    auto second = std::make_shared<FakeInstallerOperation>();
    row.monitorProgress(second);
    installer->setInstallOperation(std::make_shared<FakeInstallerOperation>());
    second->setFractionCompleted(0.9);
    EXPECT_EQ(row.progressField()->stringValue(), "INSTALLING");
    EXPECT_TRUE(row.cancelButton()->isHidden());
    second->setFinished(true);
    second->setError(vlr::makeError(vlr::VLRFrameworkErrorDomain, 1, "late"));
    EXPECT_EQ(notificationTexts(), QStringList{"Installation complete! | Tool has been successfully installed."});

    // Refused at hand-over: told as installing; failed later: as downloading.
    row.monitorProgress(nullptr);
    auto failed = std::make_shared<FakeInstallerOperation>();
    row.monitorProgress(failed);
    failed->setError(vlr::makeError(vlr::NSCocoaErrorDomain, 4, "No space left"));
    EXPECT_EQ(notificationTexts().mid(1), (QStringList{"Error installing | ", "Error downloading | No space left"}));
    EXPECT_EQ(failed->observationCount(), 0);
}
