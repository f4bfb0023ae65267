#include "MarketFixture.h"
#include "support/TestPictures.h"

#include "sdk/installs/Applications.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace {

using MarketServer = MarketFixture;

TEST_F(MarketServer, PurchaseReachesTheBuyerByPushAndOnlyBuyersGetThePackage)
{
    const QByteArray ann = signedUp(QStringLiteral("ann@market.org"));
    const QByteArray ben = signedUp(QStringLiteral("ben@market.org"));
    const QByteArray picture = pngOf(Qt::red);
    adminOutput({"add-product", "Studio Suite", "--vendor", "Lumen Labs", "--image", writeFile("suite.png", picture)});
    adminOutput({"add-installer", "Sketchpad", "--product", "Studio Suite"});
    QByteArray package(300 * 1024 + 5, Qt::Uninitialized);
    QRandomGenerator(3).fillRange(reinterpret_cast<quint32*>(package.data()), package.size() / 4);
    const QString revision =
        adminOutput({"publish-installer", "Sketchpad", writeFile("sketchpad-1.2.tar.gz", package), "--version", "1.2"});

    Events annEvents = listen(ann);
    Events benEvents = listen(ben);
    EXPECT_TRUE(cluster->call(port, "GET", "/v1/catalog", ann).json["installers"].toArray().isEmpty());
    adminOutput(
        {"grant-purchase", "ann@market.org", "Studio Suite", "--renews", "+365", "--card-expires", "2027-01-31"});
    ASSERT_TRUE(TestCluster::waitFor([&] { return annEvents.received->contains("event: catalog"); }));

    const QJsonObject catalogue = cluster->call(port, "GET", "/v1/catalog?machine=m1", ann).json;
    const QJsonObject installer = catalogue["installers"][0].toObject();
    EXPECT_EQ(installer["name"].toString(), "Sketchpad");
    EXPECT_EQ(installer["currentRevision"]["id"].toString(), revision);
    EXPECT_EQ(installer["currentRevision"]["version"].toString(), "1.2");
    EXPECT_EQ(installer["currentRevision"]["fileName"].toString(), "sketchpad-1.2.tar.gz");
    EXPECT_EQ(installer["currentRevision"]["size"].toInteger(), package.size());
    EXPECT_TRUE(installer["installedHere"].isNull());
    EXPECT_FALSE(installer["installedAnywhere"].toBool());
    const QJsonObject purchase = catalogue["purchases"][0].toObject();
    EXPECT_EQ(purchase["ccExpiresOn"].toString(), "2027-01-31T12:00:00.000Z");
    EXPECT_EQ(purchase["paymentType"].toString(), "credit_card");
    EXPECT_TRUE(
        purchase["manageURL"].toString().startsWith(QStringLiteral("https://localhost:%1/purchases/").arg(port)));
    const QJsonObject product = catalogue["products"][0].toObject();
    EXPECT_EQ(catalogue["vendors"][0]["id"], product["vendor"]);
    EXPECT_EQ(catalogue["vendors"][0]["name"].toString(), "Lumen Labs");

    // The package by range, as a broken download goes on; only for buyers.
    const QString content = "/v1/packages/" + revision;
    EXPECT_EQ(cluster->call(port, "GET", content, ann).body, package);
    EXPECT_EQ(cluster->call(port, "GET", content, ann, {}, {{"Range", "bytes=1000-"}}).body, package.mid(1000));
    EXPECT_EQ(cluster->call(port, "GET", content, ben).status, 404);
    EXPECT_EQ(cluster->call(port, "GET", content, {}).status, 401);
    const QString image = "/v1/products/" + product["id"].toString() + "/image";
    EXPECT_EQ(cluster->call(port, "GET", image, ann).body, picture);
    EXPECT_EQ(cluster->call(port, "GET", image, ben).status, 404);
    EXPECT_FALSE(benEvents.received->contains("catalog"));

    // An install on one machine: installed there, no longer new on another.
    const QJsonObject install{{"installer", installer["id"]}, {"revision", revision}, {"machine", "m1"}};
    const QByteArray body = QJsonDocument(install).toJson();
    EXPECT_EQ(cluster->call(port, "POST", "/v1/installs", ben, body).status, 404);
    ASSERT_EQ(cluster->call(port, "POST", "/v1/installs", ann, body).status, 201);
    const auto here = cluster->call(port, "GET", "/v1/catalog?machine=m1", ann).json["installers"][0];
    EXPECT_EQ(here["installedHere"]["version"].toString(), "1.2");
    const auto elsewhere = cluster->call(port, "GET", "/v1/catalog?machine=m2", ann).json["installers"][0];
    EXPECT_TRUE(elsewhere["installedHere"].isNull());
    EXPECT_TRUE(elsewhere["installedAnywhere"].toBool());

    // A new revision reaches the buyer; the other user hears nothing.
    annEvents.received->clear();
    adminOutput({"publish-installer", "Sketchpad", writeFile("sketchpad-1.3.tar.gz", "other"), "--version", "1.3"});
    EXPECT_TRUE(TestCluster::waitFor([&] { return annEvents.received->contains("event: catalog"); }));
    EXPECT_FALSE(benEvents.received->contains("catalog"));
}

// Each command runs with veluria-admin on a local database and on the
// server; apart from the identifiers, they must say the same.
TEST_F(MarketServer, AdminCommandsSayWhatTheLocalToolSays)
{
    cluster->addUser(QStringLiteral("cat@market.org"), QStringLiteral("pw"));
    QTemporaryDir local;
    localAdmin(local.path(), {"add-user", "cat@market.org", "pw"});
    const QString icon = writeFile("icon.png", pngOf(Qt::blue));
    const QString notAPicture = writeFile("notes.txt", "just text");
    const QString package = writeFile("tool-2.0.zip", "zip bytes");
    static const QRegularExpression uuid(
        QStringLiteral("[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}"));

    const QList<QStringList> commands{
        {"add-vendor", "Tool Works"},
        {"add-product", "Toolbox", "--vendor", "Tool Works", "--image", icon},
        {"add-product", "Broken", "--image", notAPicture},
        {"add-installer", "Hammer", "--product", "Toolbox", "--description", "Hits"},
        {"add-installer", "Hammer", "--product", "Toolbox"},
        {"add-installer", "Saw", "--product", "Nothing"},
        {"add-installer", "Saw"},
        {"publish-installer", "Hammer", package, "--version", "2.0"},
        {"publish-installer", "Drill", package},
        {"grant-purchase", "cat@market.org", "Toolbox", "--renews", "someday"},
        {"grant-purchase", "dog@market.org", "Toolbox", "--renews", "+3"},
        {"grant-purchase", "cat@market.org", "Toolbox", "--renews", "+30", "--canceled"},
        {"installers", "cat@market.org"},
    };
    for (const QStringList& command : commands) {
        const Run remote = admin(command);
        const Run here = localAdmin(local.path(), command);
        EXPECT_EQ(remote.status, here.status) << command.join(' ').toStdString();
        EXPECT_EQ(QString(remote.out).replace(uuid, "ID"), QString(here.out).replace(uuid, "ID"))
            << command.join(' ').toStdString();
        EXPECT_EQ(remote.err, here.err) << command.join(' ').toStdString();
    }

    // An install of this machine is told as this machine's.
    const QByteArray cat = cluster->signIn(port, "cat@market.org", "pw");
    const QJsonObject hammer = cluster->call(port, "GET", "/v1/catalog", cat).json["installers"][0].toObject();
    const QJsonObject install{{"installer", hammer["id"]},
                              {"revision", hammer["currentRevision"]["id"]},
                              {"machine", Applications::thisMachine()}};
    ASSERT_EQ(cluster->call(port, "POST", "/v1/installs", cat, QJsonDocument(install).toJson()).status, 201);
    EXPECT_TRUE(admin({"installers", "cat@market.org"}).out.endsWith("  Hammer  2.0  installed 2.0\n"));
}

} // namespace
