#include "TestCluster.h"

#include "sdk/accounts/Base32.h"
#include "sdk/accounts/Totp.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QRandomGenerator>
#include <QSslSocket>

#include <gtest/gtest.h>

namespace {

QByteArray json(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

class ServerTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        cluster = new TestCluster;
        if (cluster->missing().isEmpty())
            port = cluster->startServer();
    }
    static void TearDownTestSuite()
    {
        delete cluster;
        cluster = nullptr;
    }
    void SetUp() override
    {
        if (!cluster->missing().isEmpty())
            GTEST_SKIP() << cluster->missing().toStdString();
    }

    QString newWorkspace(const QByteArray& token, const QString& name)
    {
        return cluster->call(port, "POST", QStringLiteral("/v1/workspaces"), token, json({{"name", name}}))
            .json.value("id")
            .toString();
    }

    static inline TestCluster* cluster = nullptr;
    static inline quint16 port = 0;
};

TEST_F(ServerTest, SignInWithSecondFactorAndExpiry)
{
    cluster->addUser(QStringLiteral("plain@example.org"), QStringLiteral("right horse"));
    const QString secret = cluster->addUser(QStringLiteral("guarded@example.org"), QStringLiteral("battery"), true);
    ASSERT_FALSE(secret.isEmpty());

    const auto wrong = cluster->call(port, "POST", "/v1/sessions", {},
                                     json({{"email", "plain@example.org"}, {"password", "wrong horse"}}));
    EXPECT_EQ(wrong.status, 401);
    EXPECT_EQ(wrong.json["error"].toObject()["code"].toInt(), 2);
    EXPECT_EQ(cluster->call(port, "GET", "/v1/user", {}).json["error"].toObject()["code"].toInt(), 5);

    // The password alone gives a verification token that opens nothing.
    const auto first = cluster->call(port, "POST", "/v1/sessions", {},
                                     json({{"email", "GUARDED@example.org"}, {"password", "battery"}}));
    ASSERT_EQ(first.status, 202);
    const QString verification = first.json["verification"].toString();
    EXPECT_EQ(cluster->call(port, "GET", "/v1/user", verification.toLatin1()).status, 401);

    const QByteArray key = Base32::decode(secret);
    const QString code = Totp::code(key, Totp::stepAt(QDateTime::currentSecsSinceEpoch()));
    const QString badCode = code == QLatin1String("000000") ? QStringLiteral("111111") : QStringLiteral("000000");
    EXPECT_EQ(
        cluster
            ->call(port, "POST", "/v1/sessions/verify", {}, json({{"verification", verification}, {"code", badCode}}))
            .json["error"]
            .toObject()["code"]
            .toInt(),
        3);
    const auto verified =
        cluster->call(port, "POST", "/v1/sessions/verify", {}, json({{"verification", verification}, {"code", code}}));
    ASSERT_EQ(verified.status, 201);
    const QByteArray token = verified.json["token"].toString().toLatin1();
    EXPECT_EQ(cluster->call(port, "GET", "/v1/user", token).json["email"].toString(), "guarded@example.org");

    // A code is good once, even with a fresh password step.
    const auto again = cluster->call(port, "POST", "/v1/sessions", {},
                                     json({{"email", "guarded@example.org"}, {"password", "battery"}}));
    EXPECT_EQ(cluster
                  ->call(port, "POST", "/v1/sessions/verify", {},
                         json({{"verification", again.json["verification"]}, {"code", code}}))
                  .status,
              401);

    ASSERT_TRUE(cluster->sql("UPDATE sessions SET expires_at = now() - interval '1 second' WHERE NOT pending"));
    const auto expired = cluster->call(port, "GET", "/v1/workspaces", token);
    EXPECT_EQ(expired.status, 401);
    EXPECT_EQ(expired.json["error"].toObject()["code"].toInt(), 4);

    const QByteArray plain = cluster->signIn(port, "plain@example.org", "right horse");
    EXPECT_EQ(cluster->call(port, "DELETE", "/v1/sessions/current", plain).status, 204);
    EXPECT_EQ(cluster->call(port, "GET", "/v1/user", plain).status, 401);
}

TEST_F(ServerTest, UploadResumesAfterCutOffAndIsChecked)
{
    cluster->addUser(QStringLiteral("maker@example.org"), QStringLiteral("pw maker"));
    cluster->addUser(QStringLiteral("outsider@example.org"), QStringLiteral("pw outsider"));
    const QByteArray token = cluster->signIn(port, "maker@example.org", "pw maker");
    const QByteArray outsider = cluster->signIn(port, "outsider@example.org", "pw outsider");
    const QString workspace = newWorkspace(token, QStringLiteral("Assets"));
    ASSERT_FALSE(workspace.isEmpty());

    QByteArray data(3 * 1024 * 1024 + 17, Qt::Uninitialized);
    QRandomGenerator(7).fillRange(reinterpret_cast<quint32*>(data.data()), data.size() / 4);
    const QString sha = QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex());
    const auto created = cluster->call(port, "POST", "/v1/uploads", token,
                                       json({{"workspace", workspace},
                                             {"fileName", "../model \"v2\".blend"},
                                             {"size", data.size()},
                                             {"sha256", sha},
                                             {"text", "new model"}}));
    ASSERT_EQ(created.status, 201);
    const QString upload = "/v1/uploads/" + created.json["id"].toString();
    EXPECT_EQ(cluster->call(port, "HEAD", upload, outsider).status, 404);

    // Half the body arrives, then the connection dies in the middle of the request.
    const qint64 half = data.size() / 2;
    const auto offsetNow = [&] {
        return cluster->call(port, "HEAD", upload, token).header("Upload-Offset").toLongLong();
    };
    {
        QSslSocket socket;
        socket.setSslConfiguration(cluster->tls());
        socket.connectToHostEncrypted(QStringLiteral("localhost"), port);
        ASSERT_TRUE(socket.waitForEncrypted(5000));
        socket.write("PATCH " + upload.toLatin1() + " HTTP/1.1\r\nHost: localhost\r\nAuthorization: Bearer " + token
                     + "\r\nUpload-Offset: 0\r\nContent-Length: " + QByteArray::number(data.size()) + "\r\n\r\n");
        socket.write(data.left(half));
        while (socket.bytesToWrite() > 0 || socket.encryptedBytesToWrite() > 0)
            socket.waitForBytesWritten(5000);
        ASSERT_TRUE(TestCluster::waitFor([&] { return offsetNow() == half; }));
        // While that request lives, nobody else may write the upload.
        EXPECT_EQ(
            cluster->call(port, "PATCH", upload, token, data.mid(half), {{"Upload-Offset", QByteArray::number(half)}})
                .status,
            409);
        socket.abort();
    }
    const qint64 offset = offsetNow();
    EXPECT_EQ(offset, half);
    EXPECT_EQ(cluster->call(port, "PATCH", upload, token, data.mid(5), {{"Upload-Offset", "5"}}).status, 409);
    // The server may not have seen the cut-off yet: until then the upload is busy.
    TestCluster::Reply done;
    TestCluster::waitFor([&] {
        done = cluster->call(port, "PATCH", upload, token, data.mid(offset),
                             {{"Upload-Offset", QByteArray::number(offset)}});
        return done.status != 409;
    });
    ASSERT_EQ(done.status, 201) << done.body.constData();
    const QString revision = "/v1/revisions/" + done.json["revision"].toString() + "/content";

    EXPECT_EQ(cluster->call(port, "GET", revision, token).body, data);
    const auto part = cluster->call(port, "GET", revision, token, {}, {{"Range", "bytes=1000-1999"}});
    EXPECT_EQ(part.status, 206);
    EXPECT_EQ(part.body, data.mid(1000, 1000));
    EXPECT_EQ(cluster->call(port, "GET", revision, token, {}, {{"Range", "bytes=-10"}}).body, data.right(10));
    EXPECT_EQ(cluster->call(port, "GET", revision, outsider).status, 404);
    const auto listed = cluster->call(port, "GET", "/v1/workspaces/" + workspace + "/publications", token);
    EXPECT_EQ(listed.json["publications"].toArray().at(0)["revision"]["fileName"].toString(), "../model \"v2\".blend");

    // Bytes that don't match their announced SHA-256 are refused and dropped.
    const auto liar = cluster->call(
        port, "POST", "/v1/uploads", token,
        json(
            {{"workspace", workspace}, {"fileName", "b.bin"}, {"size", 4}, {"sha256", QString(64, QLatin1Char('a'))}}));
    ASSERT_EQ(liar.status, 201) << liar.body.constData();
    const QString liarPath = "/v1/uploads/" + liar.json["id"].toString();
    EXPECT_EQ(cluster->call(port, "PATCH", liarPath, token, "abcd", {{"Upload-Offset", "0"}}).status, 422);
    EXPECT_EQ(cluster->call(port, "HEAD", liarPath, token).status, 404);
    // Named at the end instead, the digest is checked against the bytes kept.
    const auto late = cluster->call(port, "POST", "/v1/uploads", token,
                                    json({{"workspace", workspace}, {"fileName", "c.bin"}, {"size", 4}}));
    const QString latePath = "/v1/uploads/" + late.json["id"].toString();
    EXPECT_EQ(cluster->call(port, "PATCH", latePath, token, "abcd", {{"Upload-Offset", "0"}}).status, 204);
    EXPECT_EQ(cluster
                  ->call(port, "PATCH", latePath, token, {},
                         {{"Upload-Offset", "4"}, {"Upload-Digest", "sha-256=" + QByteArray(64, 'a')}})
                  .status,
              422);

    // The end asked for again, as by a client whose answer was lost, gives
    // the same revision and makes no second one.
    EXPECT_EQ(offsetNow(), data.size());
    const auto again =
        cluster->call(port, "PATCH", upload, token, {}, {{"Upload-Offset", QByteArray::number(data.size())}});
    EXPECT_EQ(again.status, 201);
    EXPECT_EQ(again.json["revision"], done.json["revision"]);
    EXPECT_EQ(cluster->call(port, "PATCH", upload, token, "x", {{"Upload-Offset", "0"}}).status, 409);
    EXPECT_EQ(cluster->call(port, "GET", "/v1/workspaces/" + workspace + "/publications", token)
                  .json["publications"]
                  .toArray()
                  .size(),
              1);
}

TEST_F(ServerTest, PublicationReachesMemberThroughAnotherProcess)
{
    const quint16 other = cluster->startServer();
    cluster->addUser(QStringLiteral("ann@example.org"), QStringLiteral("pw ann"));
    cluster->addUser(QStringLiteral("ben@example.org"), QStringLiteral("pw ben"));
    const QByteArray ann = cluster->signIn(port, "ann@example.org", "pw ann");
    const QByteArray ben = cluster->signIn(other, "ben@example.org", "pw ben");
    const QString workspace = newWorkspace(ann, QStringLiteral("Shared"));
    const QString secret = newWorkspace(ann, QStringLiteral("Ann's own"));
    const QString members = "/v1/workspaces/" + workspace + "/members";
    ASSERT_EQ(cluster->call(port, "POST", members, ann, json({{"email", "ben@example.org"}})).status, 201);
    EXPECT_EQ(cluster->call(other, "POST", members, ben, json({{"email", "ann@example.org"}})).status, 403);

    QByteArray received;
    QNetworkReply* stream = cluster->openEvents(other, ben);
    QObject::connect(stream, &QNetworkReply::readyRead, [&] { received += stream->readAll(); });
    ASSERT_TRUE(TestCluster::waitFor([&] { return received.contains(": connected"); }));

    const auto publish = [&](const QString& where, const QString& text) {
        return cluster->call(port, "POST", "/v1/workspaces/" + where + "/publications", ann, json({{"text", text}}));
    };
    ASSERT_EQ(publish(workspace, QStringLiteral("first")).status, 201);
    publish(secret, QStringLiteral("not for ben"));
    ASSERT_TRUE(TestCluster::waitFor([&] { return received.contains("\"text\":\"first\""); }));
    const qint64 lastSeen = received.mid(received.lastIndexOf("id: ") + 4).split('\n').first().toLongLong();
    stream->abort();
    stream->deleteLater();

    // Missed while away: each arrives once after the reconnection, in order.
    publish(workspace, QStringLiteral("second"));
    publish(workspace, QStringLiteral("third"));
    received.clear();
    QNetworkReply* again = cluster->openEvents(other, ben, lastSeen);
    QObject::connect(again, &QNetworkReply::readyRead, [&] { received += again->readAll(); });
    ASSERT_TRUE(TestCluster::waitFor([&] { return received.contains("\"text\":\"third\""); }));
    EXPECT_EQ(received.count("event: publication"), 2);
    EXPECT_LT(received.indexOf("second"), received.indexOf("third"));
    EXPECT_FALSE(received.contains("not for ben"));

    // A member who was removed hears nothing more.
    ASSERT_EQ(cluster
                  ->call(port, "DELETE",
                         members + "/" + cluster->call(port, "GET", members, ann).json["members"][1]["id"].toString(),
                         ann)
                  .status,
              204);
    publish(workspace, QStringLiteral("after removal"));
    publish(secret, QStringLiteral("marker"));
    EXPECT_EQ(cluster->call(other, "GET", "/v1/workspaces/" + workspace + "/publications", ben).status, 404);
    again->abort();
    again->deleteLater();
    EXPECT_FALSE(received.contains("after removal"));

    // A stream lasts no longer than its session: signed out, it gets nothing
    // more and ends.
    const QByteArray annElsewhere = cluster->signIn(other, "ann@example.org", "pw ann");
    QByteArray heard;
    QNetworkReply* ending = cluster->openEvents(other, annElsewhere);
    QObject::connect(ending, &QNetworkReply::readyRead, [&] { heard += ending->readAll(); });
    ASSERT_TRUE(TestCluster::waitFor([&] { return heard.contains(": connected"); }));
    ASSERT_EQ(cluster->call(other, "DELETE", "/v1/sessions/current", annElsewhere).status, 204);
    publish(workspace, QStringLiteral("after sign-out"));
    EXPECT_TRUE(TestCluster::waitFor([&] { return ending->isFinished(); }));
    EXPECT_FALSE(heard.contains("after sign-out"));
    ending->deleteLater();
}

} // namespace
