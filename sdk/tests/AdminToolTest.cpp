#include "ServiceFixture.h"

#include "AdminTool.h"
#include "sdk/accounts/Base32.h"
#include "sdk/transfers/DownloadLink.h"

#include "service/VLRInstaller.h"
#include "service/VLRInstallerUpdater.h"
#include "service/VLRProduct.h"
#include "service/VLRPurchase.h"
#include "service/VLRRevision.h"
#include "service/VLRTransferReporting.h"
#include "service/VLRUser.h"
#include "service/VLRWorkspace.h"
#include "service/VLRWorkspaceUser.h"

#include <QDir>
#include <QImage>
#include <QRegularExpression>

#include <sys/stat.h>

namespace {

class Admin : public ServiceFixture
{
protected:
    // Runs one command on the test's database, or the one in the folder; its
    // output and status.
    int admin(const QStringList& arguments, const QString& folder = {})
    {
        out.clear();
        err.clear();
        QTextStream outStream(&out);
        QTextStream errStream(&err);
        return AdminTool(outStream, errStream)
            .run(QStringList{QStringLiteral("--database"), folder.isNull() ? databaseFolder() : folder} + arguments);
    }

    QString out;
    QString err;
};

TEST_F(Admin, TheDemoAccountIsMadeOnceAndSignsIn)
{
    ASSERT_EQ(admin({QStringLiteral("demo")}), 0) << err.toStdString();
    EXPECT_EQ(out,
              QStringLiteral("The demo account is ready.\nSign in with demo@veluria.local and the password "
                             "veluria-demo (service: localhost).\n"));
    ASSERT_EQ(admin({QStringLiteral("demo")}), 0);
    EXPECT_EQ(out,
              QStringLiteral("The demo account exists already.\nSign in with demo@veluria.local and the "
                             "password veluria-demo (service: localhost).\n"));

    const auto session = signedIn(QStringLiteral("demo@veluria.local"), QStringLiteral("veluria-demo"));
    ASSERT_NE(session, nullptr);
    EXPECT_EQ(session->user()->firstName(), QStringLiteral("Dana"));
    QStringList names;
    for (const VLRWorkspacePtr& workspace : session->workspaces())
        names.append(workspace->name());
    EXPECT_EQ(
        names,
        (QStringList{QStringLiteral("Brand refresh"), QStringLiteral("Spring campaign"),
                     QStringLiteral("Product shots"), QStringLiteral("Website copy"), QStringLiteral("Archive 2023")}));
    EXPECT_EQ(session->workspaces().at(0)->workspaceUsers().size(), 3);
    EXPECT_EQ(session->projects().size(), 5);
}

TEST_F(Admin, AccountsAreManagedAndMistakesExplained)
{
    ASSERT_EQ(admin({QStringLiteral("add-user"), QStringLiteral("ann@example.com"), QStringLiteral("pw"),
                     QStringLiteral("--first"), QStringLiteral("Ann"), QStringLiteral("--unconfirmed")}),
              0);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^[0-9a-f-]{36}\\n$")).match(out).hasMatch()) << out.toStdString();
    EXPECT_EQ(admin({QStringLiteral("add-user"), QStringLiteral("ANN@example.com"), QStringLiteral("pw")}), 1);
    EXPECT_EQ(err, QStringLiteral("veluria-admin: an account with the address ANN@example.com exists already\n"));
    EXPECT_EQ(admin({QStringLiteral("add-user"), QStringLiteral("nobody"), QStringLiteral("pw")}), 1);
    EXPECT_EQ(err, QStringLiteral("veluria-admin: \"nobody\" is not an e-mail address\n"));
    EXPECT_EQ(admin({QStringLiteral("confirm"), QStringLiteral("zed@example.com")}), 1);
    EXPECT_EQ(err, QStringLiteral("veluria-admin: no account has the address zed@example.com\n"));
    EXPECT_EQ(admin({QStringLiteral("frobnicate")}), 2);
    EXPECT_TRUE(err.startsWith(QStringLiteral("veluria-admin: unknown command frobnicate\nUsage: veluria-admin")));
    EXPECT_EQ(admin({QStringLiteral("passwd"), QStringLiteral("ann@example.com")}), 2);

    EXPECT_TRUE(AccountStore(database()).findByEmail(QStringLiteral("ann@example.com"))->needsConfirmation);
    ASSERT_EQ(admin({QStringLiteral("confirm"), QStringLiteral("ann@example.com")}), 0);
    EXPECT_FALSE(AccountStore(database()).findByEmail(QStringLiteral("ann@example.com"))->needsConfirmation);

    QImage picture(8, 8, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    const QString path = home() + QStringLiteral("/ann.png");
    ASSERT_TRUE(picture.save(path));
    ASSERT_EQ(admin({QStringLiteral("avatar"), QStringLiteral("ann@example.com"), path}), 0) << err.toStdString();
    writeFile(home() + QStringLiteral("/not.png"), "text");
    EXPECT_EQ(admin({QStringLiteral("avatar"), QStringLiteral("ann@example.com"), home() + QStringLiteral("/not.png")}),
              1);

    ASSERT_EQ(admin({QStringLiteral("passwd"), QStringLiteral("ann@example.com"), QStringLiteral("new pw")}), 0);
    EXPECT_NE(signIn(QStringLiteral("ann@example.com"), QStringLiteral("pw")).error, std::nullopt);
    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("new pw"));
    ASSERT_NE(session, nullptr);
    EXPECT_EQ(session->user()->avatar().pixelColor(3, 3), QColor(Qt::red));
    EXPECT_FALSE(session->user()->needsConfirmation());
}

TEST_F(Admin, ASecondFactorPrintsWhatAnAuthenticatorNeeds)
{
    addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_EQ(admin({QStringLiteral("enable-2fa"), QStringLiteral("ann@example.com")}), 0);
    const QRegularExpressionMatch printed =
        QRegularExpression(
            QStringLiteral("^secret: ([A-Z2-7]{32})\\nuri: (otpauth://totp/Veluria:ann@example.com\\?"
                           "secret=([A-Z2-7]{32})&issuer=Veluria&algorithm=SHA1&digits=6&period=30)\\n$"))
            .match(out);
    ASSERT_TRUE(printed.hasMatch()) << out.toStdString();
    EXPECT_EQ(printed.captured(1), printed.captured(3));
    const QByteArray secret = Base32::decode(printed.captured(1));
    // What the verifier checks codes against, as SignIn's tests show.
    EXPECT_EQ(AccountStore(database()).findByEmail(QStringLiteral("ann@example.com"))->totpSecret, secret);
}

TEST_F(Admin, WorkspacesMembersPublicationsAndLinks)
{
    addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"), QStringLiteral("Ann"));
    addUser(QStringLiteral("bob@example.com"), QStringLiteral("pw"), QStringLiteral("Bob"));
    ASSERT_EQ(admin({QStringLiteral("add-workspace"), QStringLiteral("Posters"), QStringLiteral("ann@example.com")}),
              0);
    const QString id = out.trimmed();
    EXPECT_EQ(admin({QStringLiteral("comment"), QStringLiteral("Posters"), QStringLiteral("bob@example.com"),
                     QStringLiteral("hi")}),
              1);
    EXPECT_EQ(err, QStringLiteral("veluria-admin: bob@example.com is not a member of Posters\n"));
    ASSERT_EQ(admin({QStringLiteral("add-member"), QStringLiteral("Posters"), QStringLiteral("bob@example.com")}), 0);
    ASSERT_EQ(admin({QStringLiteral("comment"), id, QStringLiteral("bob@example.com"), QStringLiteral("hi")}), 0);

    const QString file = writeFile(home() + QStringLiteral("/poster.txt"), "version one");
    ASSERT_EQ(admin({QStringLiteral("publish"), QStringLiteral("Posters"), QStringLiteral("bob@example.com"), file,
                     QStringLiteral("--text"), QStringLiteral("first")}),
              0)
        << err.toStdString();
    const QString first = out.trimmed();
    writeFile(file, "version two");
    ASSERT_EQ(admin({QStringLiteral("publish"), QStringLiteral("Posters"), QStringLiteral("bob@example.com"), file}),
              0);
    const QString second = out.trimmed();
    ASSERT_TRUE(DownloadLink::parse(first).has_value());
    EXPECT_EQ(DownloadLink::parse(first)->workspaceId, id);
    ASSERT_EQ(admin({QStringLiteral("link"), QStringLiteral("Posters"), QStringLiteral("poster.txt")}), 0);
    EXPECT_EQ(out.trimmed(), second);
    ASSERT_EQ(admin({QStringLiteral("link"), QStringLiteral("Posters"), QStringLiteral("poster.txt"),
                     QStringLiteral("--revision"), QStringLiteral("1")}),
              0);
    EXPECT_EQ(out.trimmed(), first);
    EXPECT_EQ(admin({QStringLiteral("link"), QStringLiteral("Posters"), QStringLiteral("poster.txt"),
                     QStringLiteral("--revision"), QStringLiteral("9")}),
              1);
    EXPECT_EQ(err, QStringLiteral("veluria-admin: Posters has no file poster.txt in revision 9\n"));
    ASSERT_EQ(admin({QStringLiteral("add-workspace"), QStringLiteral("Posters"), QStringLiteral("bob@example.com")}),
              0);
    EXPECT_EQ(admin({QStringLiteral("link"), QStringLiteral("Posters"), QStringLiteral("poster.txt")}), 1);
    EXPECT_EQ(err, QStringLiteral("veluria-admin: 2 workspaces are called Posters; give the identifier\n"));

    // Ann fetches the first revision by its link.
    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    VLRTransferReportingPtr transfer;
    session->downloadUrl(first, [&](const VLRTransferReportingPtr& t, const vlr::OptionalError&) { transfer = t; });
    ASSERT_TRUE(waitUntil([&] { return transfer && transfer->isFinished(); }));
    EXPECT_EQ(readFile(home() + QStringLiteral("/Veluria/Posters/poster.txt")), QByteArray("version one"));
    ASSERT_EQ(admin({QStringLiteral("workspaces"), QStringLiteral("ann@example.com")}), 0);
    EXPECT_TRUE(out.contains(id + QStringLiteral("  ")));
    EXPECT_TRUE(out.endsWith(QStringLiteral("  Posters\n")));
}

// Mistakes and damage are told, and nothing the user had is lost.
TEST_F(Admin, BadInputAndDamagedDatabasesAreToldAndKept)
{
    const QString missing = home() + QStringLiteral("/no/such/folder");
    EXPECT_EQ(admin({QStringLiteral("workspaces"), QStringLiteral("ann@example.com")}, missing), 1);
    EXPECT_EQ(err, QStringLiteral("veluria-admin: the database folder %1 doesn't exist\n").arg(missing));
    EXPECT_FALSE(QFileInfo::exists(missing));
    const QString blocked = writeFile(home() + QStringLiteral("/file"), "x") + QStringLiteral("/data");
    QDir().mkpath(home() + QStringLiteral("/made"));
    EXPECT_EQ(admin({QStringLiteral("workspaces"), QStringLiteral("x@y.z")}, home() + QStringLiteral("/made")), 1);
    EXPECT_TRUE(err.startsWith(QStringLiteral("veluria-admin: a new database was made in "))) << err.toStdString();

    addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    addWorkspace(QStringLiteral("Posters"),
                 AccountStore(database()).findByEmail(QStringLiteral("ann@example.com"))->id);
    EXPECT_EQ(admin({QStringLiteral("link"), QStringLiteral("Posters"), QStringLiteral("poster.txt"),
                     QStringLiteral("--revision"), QStringLiteral("abc")}),
              1);
    EXPECT_EQ(err, QStringLiteral("veluria-admin: the revision must be a number from 1 up, not abc\n"));
    const QString pipe = home() + QStringLiteral("/pipe");
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(admin({QStringLiteral("publish"), QStringLiteral("Posters"), QStringLiteral("ann@example.com"), pipe}),
              1);
    EXPECT_EQ(err, QStringLiteral("veluria-admin: Unable to read \"pipe\": not a regular file or folder\n"));
    EXPECT_TRUE(QDir(databaseFolder() + QStringLiteral("/Store/tmp")).isEmpty());

    // A damaged file is kept as it was, beside a new database.
    const QString damaged = home() + QStringLiteral("/damaged");
    QDir().mkpath(damaged);
    const QByteArray garbage = randomBytes(8192);
    writeFile(damaged + QStringLiteral("/Veluria.sqlite"), garbage);
    EXPECT_EQ(admin({QStringLiteral("workspaces"), QStringLiteral("x@y.z")}, damaged), 1);
    EXPECT_TRUE(err.contains(QStringLiteral("was damaged; it is kept as %1/Veluria.sqlite.damaged").arg(damaged)))
        << err.toStdString();
    EXPECT_EQ(readFile(damaged + QStringLiteral("/Veluria.sqlite.damaged")), garbage);
    writeFile(damaged + QStringLiteral("/Veluria.sqlite"), garbage);
    EXPECT_EQ(admin({QStringLiteral("workspaces"), QStringLiteral("x@y.z")}, damaged), 1);
    EXPECT_EQ(readFile(damaged + QStringLiteral("/Veluria.sqlite.damaged-2")), garbage);
    writeFile(damaged + QStringLiteral("/Veluria.sqlite"), {});
    QFile::remove(damaged + QStringLiteral("/Veluria.sqlite-wal"));
    EXPECT_EQ(admin({QStringLiteral("workspaces"), QStringLiteral("x@y.z")}, damaged), 1);
    EXPECT_TRUE(err.contains(QStringLiteral("Veluria.sqlite was empty"))) << err.toStdString();
    QString failure;
    EXPECT_EQ(Database::open(blocked, &failure), nullptr);
    EXPECT_EQ(failure, QStringLiteral("the folder %1 can't be used: Not a directory").arg(blocked));
}

} // namespace

TEST_F(Admin, TheCatalogueIsManagedAndTheDemoShowsEveryMarketplaceState)
{
    ASSERT_EQ(admin({QStringLiteral("add-user"), QStringLiteral("ann@example.com"), QStringLiteral("pw")}), 0);
    ASSERT_EQ(admin({QStringLiteral("add-product"), QStringLiteral("Suite"), QStringLiteral("--vendor"),
                     QStringLiteral("Lumen")}),
              0);
    EXPECT_EQ(admin({QStringLiteral("add-installer"), QStringLiteral("Tool"), QStringLiteral("--product"),
                     QStringLiteral("Nothing")}),
              1);
    EXPECT_EQ(err, QStringLiteral("veluria-admin: no product is called Nothing\n"));
    ASSERT_EQ(admin({QStringLiteral("add-installer"), QStringLiteral("Tool"), QStringLiteral("--product"),
                     QStringLiteral("Suite")}),
              0);
    const QString toolId = out.trimmed();
    EXPECT_EQ(admin({QStringLiteral("add-installer"), QStringLiteral("Tool"), QStringLiteral("--product"),
                     QStringLiteral("Suite")}),
              1);
    EXPECT_EQ(admin({QStringLiteral("publish-installer"), QStringLiteral("Tool"), home() + "/missing.tar.gz"}), 1);
    const QString package = writeFile(home() + QStringLiteral("/tool.tar.gz"), randomBytes(1000));
    ASSERT_EQ(admin({QStringLiteral("publish-installer"), QStringLiteral("Tool"), package, QStringLiteral("--version"),
                     QStringLiteral("1.0")}),
              0);
    EXPECT_EQ(admin({QStringLiteral("grant-purchase"), QStringLiteral("ann@example.com"), QStringLiteral("Suite"),
                     QStringLiteral("--renews"), QStringLiteral("next year")}),
              1);
    EXPECT_EQ(err, QStringLiteral("veluria-admin: a date is YYYY-MM-DD, or +N or -N days\n"));
    EXPECT_EQ(admin({QStringLiteral("installers"), QStringLiteral("ann@example.com")}), 0);
    EXPECT_EQ(out, QString());
    ASSERT_EQ(admin({QStringLiteral("grant-purchase"), QStringLiteral("ann@example.com"), QStringLiteral("Suite"),
                     QStringLiteral("--renews"), QStringLiteral("2030-01-31"), QStringLiteral("--card-expires"),
                     QStringLiteral("-1")}),
              0);
    EXPECT_EQ(admin({QStringLiteral("installers"), QStringLiteral("ann@example.com")}), 0);
    EXPECT_EQ(out, toolId + QStringLiteral("  Tool  1.0  new\n"));
    {
        const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
        ASSERT_EQ(session->purchases().size(), 1);
        const auto purchase = std::static_pointer_cast<VLRPurchase>(session->purchases().first());
        EXPECT_EQ(purchase->renewsAt(), QDateTime(QDate(2030, 1, 31), QTime(12, 0), Qt::UTC));
        EXPECT_LT(purchase->ccExpiresOn(), QDateTime::currentDateTimeUtc());
        EXPECT_EQ(purchase->paymentType(), QStringLiteral("credit_card"));
        session->logoutWithCompletionHandler({});
    }

    ASSERT_EQ(admin({QStringLiteral("demo")}), 0) << err.toStdString();
    const auto demo = signedIn(QStringLiteral("demo@veluria.local"), QStringLiteral("veluria-demo"));
    ASSERT_NE(demo, nullptr);
    auto names = [](const VLRInstallerList& list) {
        QStringList shown;
        for (const VLRInstallerPtr& installer : list)
            shown.append(installer->name());
        return shown;
    };
    EXPECT_EQ(names(demo->installers()),
              (QStringList{QStringLiteral("Color Meter"), QStringLiteral("Field Notes"),
                           QStringLiteral("Palette Picker"), QStringLiteral("Sketchpad")}));
    EXPECT_EQ(names(demo->updater()->neverInstalled()), QStringList{QStringLiteral("Color Meter")});
    EXPECT_EQ(names(demo->updater()->notInstalled()), QStringList{QStringLiteral("Field Notes")});
    EXPECT_EQ(names(demo->updater()->installerUpdates()), QStringList{QStringLiteral("Sketchpad")});
    EXPECT_EQ(demo->installers().at(3)->installedVersionString(), QStringLiteral("1.0"));
    EXPECT_EQ(demo->installers().at(3)->currentRevision()->versionDisplay(), QStringLiteral("1.1"));
    EXPECT_TRUE(QFileInfo::exists(
        home()
        + QStringLiteral("/.local/share/applications/veluria-%1.desktop").arg(demo->installers().at(2)->identifier())));
    // One card expires within 30 days; the purchase that isn't paid by card
    // has no card date.
    ASSERT_EQ(demo->purchases().size(), 2);
    const auto suite = std::static_pointer_cast<VLRPurchase>(demo->purchases().at(0));
    const auto notes = std::static_pointer_cast<VLRPurchase>(demo->purchases().at(1));
    EXPECT_GT(suite->ccExpiresOn(), QDateTime::currentDateTimeUtc());
    EXPECT_LT(suite->ccExpiresOn(), QDateTime::currentDateTimeUtc().addDays(30));
    EXPECT_TRUE(notes->canceled());
    EXPECT_NE(notes->paymentType(), VLRPurchase::CreditCardPaymentType);
    EXPECT_FALSE(suite->product()->image().isNull());
}
