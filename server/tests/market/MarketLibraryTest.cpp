#include "MarketFixture.h"

#include "sdk/installs/Applications.h"
#include "sdk/installs/PackageBuilder.h"
#include "sdk/market/InstallRun.h"
#include "sdk/marketplace/ServerMarketSource.h"
#include "sdk/marketplace/SessionMarketplace.h"

#include "service/VLRInstallerOperation.h"
#include "service/VLRProduct.h"
#include "service/VLRPurchase.h"
#include "service/VLRRevision.h"
#include "service/VLRVendor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

// The library's marketplace against the server, installing into a home of
// its own.
class MarketLibrary : public MarketFixture
{
protected:
    void SetUp() override
    {
        MarketFixture::SetUp();
        m_previousHome = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", m_home.filePath(QStringLiteral("data")).toLocal8Bit());
    }
    void TearDown() override { qputenv("XDG_DATA_HOME", m_previousHome); }

    static QString package(const QString& version)
    {
        const QString path = files->filePath(QStringLiteral("brush-%1.tar.gz").arg(version));
        QString failure;
        EXPECT_TRUE(PackageBuilder::write(
            path, PackageBuilder::demoApplication(QStringLiteral("brush"), QStringLiteral("Brush"), version),
            &failure));
        return path;
    }

    std::shared_ptr<SessionMarketplace> marketplace(const QByteArray& token)
    {
        RemoteEndpoint endpoint;
        endpoint.base = QUrl(QStringLiteral("https://localhost:%1").arg(port));
        endpoint.token = token;
        endpoint.trusted = cluster->tls().caCertificates();
        SessionMarketplace::Hooks hooks;
        hooks.installersChanged = [this](const VLRInstallerList& list) { installers = list; };
        hooks.purchasesChanged = [this](const VLRPurchaseList& list) { purchases = list; };
        return std::make_shared<SessionMarketplace>(std::make_shared<ServerMarketSource>(endpoint), QString(), hooks);
    }

    static bool finishes(const VLRInstallerOperationPtr& operation)
    {
        return operation && TestCluster::waitFor([&] { return operation->isFinished() || operation->error(); }, 20000)
            && !operation->error();
    }

    VLRInstallerList installers;
    VLRPurchaseList purchases;

private:
    QTemporaryDir m_home;
    QByteArray m_previousHome;
};

TEST_F(MarketLibrary, PackageInstallsFromTheServerAndUpdatesGoOnFromABrokenDownload)
{
    const QByteArray token = signedUp(QStringLiteral("dan@market.org"));
    adminOutput({"add-product", "Paint Kit", "--vendor", "Easel Co"});
    adminOutput({"add-installer", "Brush", "--product", "Paint Kit"});
    adminOutput({"publish-installer", "Brush", package("1.0"), "--version", "1.0"});
    adminOutput({"grant-purchase", "dan@market.org", "Paint Kit", "--renews", "+30", "--payment", "credit_card",
                 "--card-expires", "+20"});

    const auto market = marketplace(token);
    market->refresh();
    ASSERT_TRUE(TestCluster::waitFor([&] { return !installers.isEmpty() && !purchases.isEmpty(); }));
    const VLRInstallerPtr brush = installers.first();
    EXPECT_EQ(brush->currentRevision()->versionDisplay(), "1.0");
    EXPECT_EQ(market->updater()->neverInstalled(), installers);
    EXPECT_EQ(purchases.first()->product()->vendor()->name(), "Easel Co");
    EXPECT_LT(purchases.first()->ccExpiresOn(), QDateTime::currentDateTimeUtc().addDays(21));

    ASSERT_TRUE(finishes(brush->downloadAndInstallLatestRevision()));
    EXPECT_EQ(brush->installedVersionString(), "1.0");
    EXPECT_TRUE(Applications::isPresent(brush->identifier()));
    EXPECT_TRUE(market->updater()->neverInstalled().isEmpty());

    // A newer revision is an update; half its package is already here from
    // a download that broke, and the rest comes from the server.
    const QString second = package("1.1");
    const QString revision = adminOutput({"publish-installer", "Brush", second, "--version", "1.1"});
    market->refresh();
    ASSERT_TRUE(TestCluster::waitFor([&] { return !market->updater()->installerUpdates().isEmpty(); }));
    QFile whole(second);
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    const QByteArray bytes = whole.readAll();
    QFile partial(InstallRun::packagePath(revision));
    ASSERT_TRUE(partial.open(QIODevice::WriteOnly));
    partial.write(bytes.left(bytes.size() / 2));
    partial.close();
    ASSERT_TRUE(finishes(brush->downloadAndInstallLatestRevision()));
    EXPECT_EQ(brush->installedVersionString(), "1.1");
    EXPECT_TRUE(market->updater()->installerUpdates().isEmpty());
    EXPECT_FALSE(QFile::exists(InstallRun::packagePath(revision)));
    market->end();
}

TEST_F(MarketLibrary, ADamagedDownloadIsRefusedAndAForgottenInstallIsNewAgain)
{
    const QByteArray token = signedUp(QStringLiteral("fay@market.org"));
    adminOutput({"add-product", "Map Kit"});
    adminOutput({"add-installer", "Atlas", "--product", "Map Kit"});
    const QString revision = adminOutput({"publish-installer", "Atlas", package("2.0"), "--version", "2.0"});
    adminOutput({"grant-purchase", "fay@market.org", "Map Kit", "--renews", "+30"});
    const auto market = marketplace(token);
    market->refresh();
    ASSERT_TRUE(TestCluster::waitFor([&] { return !installers.isEmpty(); }));
    const VLRInstallerPtr atlas = installers.first();

    // A partial download of the full size whose bytes are not the package's.
    QFile partial(InstallRun::packagePath(revision));
    QDir().mkpath(QFileInfo(partial).path());
    ASSERT_TRUE(partial.open(QIODevice::WriteOnly));
    QFile real(files->filePath(QStringLiteral("brush-2.0.tar.gz")));
    ASSERT_TRUE(real.open(QIODevice::ReadOnly));
    partial.write(QByteArray(real.size(), 'x'));
    partial.close();
    const VLRInstallerOperationPtr damaged = atlas->downloadAndInstallLatestRevision();
    ASSERT_TRUE(TestCluster::waitFor([&] { return damaged->error().has_value(); }, 20000));
    EXPECT_EQ(damaged->error()->code, 63);
    EXPECT_FALSE(QFile::exists(InstallRun::packagePath(revision)));
    EXPECT_TRUE(atlas->installedVersionString().isNull());

    ASSERT_TRUE(finishes(atlas->downloadAndInstallLatestRevision()));
    EXPECT_EQ(atlas->installedVersionString(), "2.0");
    bool forgotten = false;
    atlas->forgetLocalInstallWithCompletionHandler([&](const vlr::OptionalError& error) { forgotten = !error; });
    ASSERT_TRUE(TestCluster::waitFor([&] { return forgotten; }));
    EXPECT_TRUE(atlas->installedVersionString().isNull());
    EXPECT_FALSE(Applications::isPresent(atlas->identifier()));
    EXPECT_EQ(market->updater()->neverInstalled(), installers);
    market->end();
}

} // namespace
