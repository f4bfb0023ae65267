#include "MarketFixture.h"

#include "sdk/remote/VeluriaServiceLibrary.h"

#include "service/VLREnvironment.h"
#include "service/VLRInit.h"
#include "service/VLRInstallerUpdater.h"
#include "service/VLRProduct.h"
#include "service/VLRPurchase.h"
#include "service/VLRUtils.h"

#include <QSettings>

namespace {

using MarketSession = MarketFixture;

// A signed-in session of the library hears of a purchase by push alone and
// shows what it entitles to.
TEST_F(MarketSession, APurchaseGrantedOnTheServerReachesTheSignedInSession)
{
    QTemporaryDir folder;
    const QString certificate = folder.filePath(QStringLiteral("trusted.pem"));
    QFile pem(certificate);
    ASSERT_TRUE(pem.open(QIODevice::WriteOnly));
    pem.write(cluster->tls().caCertificates().value(0).toPem());
    pem.close();
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path());
    QSettings settings(folder.filePath(QStringLiteral("Veluria/VeluriaService.ini")), QSettings::IniFormat);
    settings.setValue(QStringLiteral("server/address"), QStringLiteral("https://127.0.0.1:%1").arg(port));
    settings.setValue(QStringLiteral("server/trustedCertificate"), certificate);
    settings.sync();

    VeluriaServiceLibrary library;
    library.utils().setDatabaseLocation(QUrl::fromLocalFile(folder.path()));
    library.environment().setEnvironmentWithDomainName(QStringLiteral("127.0.0.1"));
    cluster->addUser(QStringLiteral("eve@market.org"), QStringLiteral("eve pw"));
    VLRUserSessionPtr session;
    library.createUserSessionWithLoginCredentials(
        VLRLoginCredentials(QStringLiteral("eve@market.org"), QStringLiteral("eve pw")),
        QStringLiteral("lumenra-courier-token"), true,
        [&](const VLRUserSessionPtr& signedIn, const VLRLoginVerifierPtr&, const vlr::OptionalError&) {
            session = signedIn;
        });
    ASSERT_TRUE(TestCluster::waitFor([&] { return session != nullptr; }, 20000));
    adminOutput({"add-product", "Field Kit"});
    adminOutput({"add-installer", "Compass", "--product", "Field Kit"});
    adminOutput({"publish-installer", "Compass", writeFile("compass.AppImage", "#!/bin/sh\n"), "--version", "3"});
    // Let the session's first look at the catalogue pass: from here on only
    // a push can tell it of the purchase.
    TestCluster::waitFor([] { return false; }, 1000);
    EXPECT_TRUE(session->purchases().isEmpty());

    adminOutput({"grant-purchase", "eve@market.org", "Field Kit", "--renews", "+90", "--payment", "invoice"});
    ASSERT_TRUE(TestCluster::waitFor([&] { return !session->purchases().isEmpty(); }, 5000));
    EXPECT_TRUE(session->hasPurchases());
    EXPECT_EQ(session->purchases().first()->product()->name(), "Field Kit");
    EXPECT_EQ(session->purchases().first()->paymentType(), "invoice");
    ASSERT_TRUE(TestCluster::waitFor([&] { return !session->updater()->neverInstalled().isEmpty(); }));
    EXPECT_EQ(session->updater()->neverInstalled(), session->installers());
    session->logoutWithCompletionHandler({});
    library.init().shutdown();
}

} // namespace
