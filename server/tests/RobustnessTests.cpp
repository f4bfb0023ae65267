#include "TestCluster.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonDocument>
#include <QNetworkReply>

#include <gtest/gtest.h>

namespace {

QByteArray json(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

// Each test has a cluster of its own: they stop the database, count failures
// and age uploads, which no other test should meet.
class RobustnessTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (!cluster.missing().isEmpty())
            GTEST_SKIP() << cluster.missing().toStdString();
    }

    QString newWorkspace(quint16 port, const QByteArray& token)
    {
        return cluster.call(port, "POST", QStringLiteral("/v1/workspaces"), token, json({{"name", "W"}}))
            .json.value("id")
            .toString();
    }

    TestCluster cluster;
};

TEST_F(RobustnessTest, DatabaseRestartAnswers503ThenRecoversWithoutLosingEvents)
{
    const quint16 port = cluster.startServer();
    cluster.addUser(QStringLiteral("ann@example.org"), QStringLiteral("pw ann"));
    const QByteArray token = cluster.signIn(port, "ann@example.org", "pw ann");
    const QString workspace = newWorkspace(port, token);
    ASSERT_FALSE(workspace.isEmpty());
    QByteArray received;
    QNetworkReply* stream = cluster.openEvents(port, token);
    QObject::connect(stream, &QNetworkReply::readyRead, [&] { received += stream->readAll(); });
    ASSERT_TRUE(TestCluster::waitFor([&] { return received.contains(": connected"); }));

    ASSERT_TRUE(cluster.stopDatabase());
    const auto away = cluster.call(port, "GET", "/v1/workspaces", token);
    EXPECT_EQ(away.status, 503);
    EXPECT_FALSE(away.json["error"]["message"].toString().isEmpty());
    EXPECT_FALSE(away.header("Retry-After").isEmpty());

    ASSERT_TRUE(cluster.startDatabase());
    ASSERT_TRUE(
        TestCluster::waitFor([&] { return cluster.call(port, "GET", "/v1/workspaces", token).status == 200; }, 10000));
    // Published at once: possibly before the server listens for it again.
    ASSERT_EQ(cluster
                  .call(port, "POST", "/v1/workspaces/" + workspace + "/publications", token,
                        json({{"text", "after the restart"}}))
                  .status,
              201);
    EXPECT_TRUE(TestCluster::waitFor([&] { return received.contains("after the restart"); }, 10000));
    stream->abort();
    stream->deleteLater();
}

TEST_F(RobustnessTest, FailedSignInsAreLimitedAcrossProcesses)
{
    const quint16 first = cluster.startServer();
    const quint16 second = cluster.startServer();
    cluster.addUser(QStringLiteral("target@example.org"), QStringLiteral("the right one"));
    cluster.addUser(QStringLiteral("other@example.org"), QStringLiteral("pw other"));
    const auto attempt = [&](quint16 port, const char* email, const char* password) {
        return cluster.call(port, "POST", "/v1/sessions", {}, json({{"email", email}, {"password", password}}));
    };
    // A success in between doesn't hide the guesses before it from the count.
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(attempt(i % 2 ? first : second, "Target@example.org", "guess").status, 401);
    const auto limited = attempt(first, "target@example.org", "the right one");
    EXPECT_EQ(limited.status, 429);
    EXPECT_GT(limited.header("Retry-After").toInt(), 0);
    EXPECT_EQ(attempt(second, "target@example.org", "the right one").status, 429);
    EXPECT_EQ(attempt(second, "other@example.org", "pw other").status, 201);

    // Behind a trusted load balancer each client is counted on its own;
    // anybody else's X-Forwarded-For is not believed.
    const quint16 balanced = cluster.startServer(
        {{QStringLiteral("trustedProxies"), QStringList{QStringLiteral("10.0.0.0/8"), QStringLiteral("127.0.0.1")}}});
    const auto from = [&](quint16 port, const QByteArray& client, const QString& email, const char* password) {
        return cluster
            .call(port, "POST", "/v1/sessions", {}, json({{"email", email}, {"password", password}}),
                  {{"X-Forwarded-For", client + ", 10.1.2.3"}})
            .status;
    };
    for (int i = 0; i < 30; ++i)
        from(balanced, "203.0.113.7", QStringLiteral("nobody%1@example.org").arg(i), "guess");
    EXPECT_EQ(from(balanced, "203.0.113.7", QStringLiteral("other@example.org"), "pw other"), 429);
    EXPECT_EQ(from(balanced, "203.0.113.8", QStringLiteral("other@example.org"), "pw other"), 201);
    EXPECT_EQ(from(first, "203.0.113.8", QStringLiteral("other@example.org"), "pw other"), 201);
}

TEST_F(RobustnessTest, AbandonedUploadIsRemovedAndActiveOneKept)
{
    const quint16 port = cluster.startServer({{QStringLiteral("uploadTimeout"), 3}});
    cluster.addUser(QStringLiteral("maker@example.org"), QStringLiteral("pw maker"));
    const QByteArray token = cluster.signIn(port, "maker@example.org", "pw maker");
    const QString workspace = newWorkspace(port, token);
    const QByteArray data(4096, 'x');
    const auto start = [&] {
        const auto made = cluster.call(
            port, "POST", "/v1/uploads", token,
            json(
                {{"workspace", workspace},
                 {"fileName", "f.bin"},
                 {"size", data.size()},
                 {"sha256", QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex())}}));
        return made.json["id"].toString();
    };
    const QString abandoned = start();
    const QString active = start();
    ASSERT_FALSE(abandoned.isEmpty());
    const auto patch = [&](const QString& id, qint64 offset) {
        return cluster.call(port, "PATCH", "/v1/uploads/" + id, token, data.mid(offset, 1),
                            {{"Upload-Offset", QByteArray::number(offset)}});
    };
    ASSERT_EQ(patch(abandoned, 0).status, 204);
    qint64 sent = 0;
    const bool swept = TestCluster::waitFor(
        [&] {
            if (patch(active, sent).status == 204)
                ++sent;
            return cluster.call(port, "HEAD", "/v1/uploads/" + abandoned, token).status == 404;
        },
        15000);
    EXPECT_TRUE(swept);
    EXPECT_FALSE(QFile::exists(cluster.storePath() + "/uploads/" + abandoned));
    EXPECT_EQ(cluster.call(port, "HEAD", "/v1/uploads/" + active, token).header("Upload-Offset").toLongLong(), sent);
}

} // namespace
