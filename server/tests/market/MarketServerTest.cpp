#include "MarketFixture.h"

#include "AdminTool.h"

#include <QBuffer>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace {

QByteArray png(Qt::GlobalColor color)
{
    QImage image(8, 8, QImage::Format_ARGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QString idOf(const QJsonObject& answer)
{
    return answer.value("output").toString().trimmed();
}

using MarketServer = MarketFixture;

TEST_F(MarketServer, PurchaseReachesTheBuyerByPushAndOnlyBuyersGetThePackage)
{
    const QByteArray ann = signedUp(QStringLiteral("ann@market.org"));
    const QByteArray ben = signedUp(QStringLiteral("ben@market.org"));
    const QByteArray picture = png(Qt::red);
    ASSERT_FALSE(idOf(admin("add-product", {"Studio Suite"}, {{"vendor", "Lumen Labs"}, {"image", "suite.png"}},
                            {{"image", writeFile("suite.png", picture)}}))
                     .isEmpty());
    ASSERT_FALSE(idOf(admin("add-installer", {"Sketchpad"}, {{"product", "Studio Suite"}})).isEmpty());
    QByteArray package(300 * 1024 + 5, Qt::Uninitialized);
    QRandomGenerator(3).fillRange(reinterpret_cast<quint32*>(package.data()), package.size() / 4);
    const auto published = admin("publish-installer", {"Sketchpad", "/home/admin/sketchpad-1.2.tar.gz"},
                                 {{"version", "1.2"}}, {{"1", writeFile("p.tar.gz", package)}});
    const QString revision = idOf(published);
    ASSERT_FALSE(revision.isEmpty()) << published["error"]["message"].toString().toStdString();

    Events annEvents = listen(ann);
    Events benEvents = listen(ben);
    EXPECT_TRUE(cluster->call(port, "GET", "/v1/catalog", ann).json["installers"].toArray().isEmpty());
    ASSERT_FALSE(idOf(admin("grant-purchase", {"ann@market.org", "Studio Suite"},
                            {{"renews", "+365"}, {"card-expires", "2027-01-31"}}))
                     .isEmpty());
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
    ASSERT_FALSE(idOf(admin("publish-installer", {"Sketchpad", "sketchpad-1.3.tar.gz"}, {{"version", "1.3"}},
                            {{"1", writeFile("q.tar.gz", "other bytes")}}))
                     .isEmpty());
    EXPECT_TRUE(TestCluster::waitFor([&] { return annEvents.received->contains("event: catalog"); }));
    EXPECT_FALSE(benEvents.received->contains("catalog"));
}

// Each command runs on a local database with veluria-admin and on the
// server; apart from the identifiers, they must say the same.
TEST_F(MarketServer, AdminCommandsSayWhatTheLocalToolSays)
{
    cluster->addUser(QStringLiteral("cat@market.org"), QStringLiteral("pw"));
    QTemporaryDir local;
    const auto localTool = [&](const QStringList& arguments) {
        QString out;
        QString err;
        QTextStream outStream(&out);
        QTextStream errStream(&err);
        AdminTool(outStream, errStream).run(QStringList{"--database", local.path()} + arguments);
        outStream.flush();
        errStream.flush();
        return out + err.remove(QStringLiteral("veluria-admin: "));
    };
    localTool({"add-user", "cat@market.org", "pw"});
    const QString icon = writeFile("icon.png", png(Qt::blue));
    const QString notAPicture = writeFile("notes.txt", "just text");
    const QString package = writeFile("tool-2.0.zip", "zip bytes");
    static const QRegularExpression uuid(
        QStringLiteral("[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}"));

    struct Case
    {
        QStringList arguments;
        QJsonObject options;
        QMap<QString, QString> files;
    };
    const QList<Case> cases{
        {{"add-vendor", "Tool Works"}, {}, {}},
        {{"add-product", "Toolbox", "--vendor", "Tool Works", "--image", icon},
         {{"vendor", "Tool Works"}, {"image", icon}},
         {{"image", icon}}},
        {{"add-product", "Broken", "--image", notAPicture}, {{"image", notAPicture}}, {{"image", notAPicture}}},
        {{"add-installer", "Hammer", "--product", "Toolbox", "--description", "Hits"},
         {{"product", "Toolbox"}, {"description", "Hits"}},
         {}},
        {{"add-installer", "Hammer", "--product", "Toolbox"}, {{"product", "Toolbox"}}, {}},
        {{"add-installer", "Saw", "--product", "Nothing"}, {{"product", "Nothing"}}, {}},
        {{"publish-installer", "Hammer", package, "--version", "2.0"}, {{"version", "2.0"}}, {{"1", package}}},
        {{"publish-installer", "Drill", package}, {}, {{"1", package}}},
        {{"grant-purchase", "cat@market.org", "Toolbox", "--renews", "someday"}, {{"renews", "someday"}}, {}},
        {{"grant-purchase", "dog@market.org", "Toolbox", "--renews", "+3"}, {{"renews", "+3"}}, {}},
        {{"grant-purchase", "cat@market.org", "Toolbox", "--renews", "+30", "--canceled"},
         {{"renews", "+30"}, {"canceled", true}},
         {}},
        {{"installers", "cat@market.org"}, {}, {}},
    };
    for (const Case& c : cases) {
        QStringList positional = c.arguments.mid(1);
        for (auto it = c.options.begin(); it != c.options.end(); ++it) {
            const qsizetype at = positional.indexOf("--" + it.key());
            positional.remove(at, it.value().isBool() ? 1 : 2);
        }
        const QJsonObject answer = admin(c.arguments.first(), positional, c.options, c.files);
        const QString remote =
            answer.contains("output") ? answer["output"].toString() : answer["error"]["message"].toString() + "\n";
        EXPECT_EQ(QString(remote).replace(uuid, "ID"), localTool(c.arguments).replace(uuid, "ID"))
            << c.arguments.join(' ').toStdString();
    }
}

} // namespace
