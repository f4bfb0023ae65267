#include "TestCluster.h"

#include "sdk/accounts/Base32.h"
#include "sdk/accounts/Totp.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QSslSocket>
#include <QTemporaryDir>
#include <QUrlQuery>

#include <gtest/gtest.h>

namespace {

const QString administrator = QStringLiteral("root@example.org");
const QString administratorPassword = QStringLiteral("root password");

struct Finished
{
    int status = -1;
    QString out;
    QString err;
};

Finished runProgram(const QString& program, const QStringList& arguments, const QByteArray& input = {},
                    const QString& home = {})
{
    QProcess process;
    if (!home.isEmpty()) {
        // What the local tool installs for the demo goes into a home of its own.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), home);
        environment.insert(QStringLiteral("XDG_DATA_HOME"), home + QStringLiteral("/.local/share"));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/.config"));
        process.setProcessEnvironment(environment);
    }
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(120000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()), QString::fromUtf8(process.readAllStandardError())};
}

// Identifiers, times and secrets differ between two databases; the rest of
// what the tool prints must not.
QString comparable(QString text)
{
    static const QRegularExpression uuid(
        QStringLiteral("[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}"));
    static const QRegularExpression time(QStringLiteral("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d"));
    static const QRegularExpression secret(QStringLiteral("(secret[:=] ?)[A-Z2-7]+"));
    static const QRegularExpression made(QStringLiteral("veluria-admin: a new database was made in [^\\n]*\\n"));
    return text.replace(uuid, QStringLiteral("<id>"))
        .replace(time, QStringLiteral("<time>"))
        .replace(secret, QStringLiteral("\\1<secret>"))
        .remove(made);
}

class AdminTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        cluster = new TestCluster;
        if (!cluster->missing().isEmpty())
            return;
        port = cluster->startServer();
        initialised = init(cluster->configPath(), administrator);
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
        ASSERT_EQ(initialised.status, 0) << initialised.err.toStdString();
    }

    static Finished init(const QString& config, const QString& email)
    {
        return runProgram(QStringLiteral(VELURIA_SERVER_BINARY),
                          {QStringLiteral("--config"), config, QStringLiteral("--init")},
                          (email + QLatin1Char('\n') + administratorPassword + QLatin1Char('\n')).toUtf8());
    }
    static Finished remote(const QStringList& command, const QString& home = {})
    {
        return runProgram(QStringLiteral(VELURIA_ADMIN_BINARY),
                          QStringList{QStringLiteral("--server"), QStringLiteral("https://localhost:%1").arg(port),
                                      QStringLiteral("--trust"), cluster->folder() + QStringLiteral("/tls/server.crt"),
                                      QStringLiteral("--admin"), administrator}
                              + command,
                          administratorPassword.toUtf8() + '\n', home);
    }
    static QByteArray adminToken() { return cluster->signIn(port, administrator, administratorPassword); }

    static inline TestCluster* cluster = nullptr;
    static inline quint16 port = 0;
    static inline Finished initialised;
};

TEST_F(AdminTest, InitMakesTheFirstAdministratorOfAnEmptyDatabaseOnce)
{
    ASSERT_TRUE(cluster->sql(QStringLiteral("CREATE DATABASE fresh")));
    const QString config = cluster->folder() + QStringLiteral("/fresh.ini");
    QFile::copy(cluster->configPath(), config);
    QSettings(config, QSettings::IniFormat).setValue(QStringLiteral("database/name"), QStringLiteral("fresh"));

    const Finished first = init(config, QStringLiteral("first@example.org"));
    EXPECT_EQ(first.status, 0) << first.err.toStdString();
    EXPECT_FALSE((first.out + first.err).contains(administratorPassword));
    const Finished second = init(config, QStringLiteral("second@example.org"));
    EXPECT_EQ(second.status, 1);
    EXPECT_TRUE(second.err.contains(QStringLiteral("first@example.org"))) << second.err.toStdString();

    // Another administrator is made and the first let go; the last one stays.
    const auto server = [&](const QStringList& arguments, const QByteArray& input = {}) {
        return runProgram(QStringLiteral(VELURIA_SERVER_BINARY),
                          QStringList{QStringLiteral("--config"), config} + arguments, input);
    };
    EXPECT_EQ(server({QStringLiteral("--administrator"), QStringLiteral("nobody@example.org")}).status, 1);
    ASSERT_EQ(server({QStringLiteral("--add-user"), QStringLiteral("second@example.org")}, "pw second\n").status, 0);
    EXPECT_EQ(server({QStringLiteral("--administrator"), QStringLiteral("Second@example.org")}).status, 0);
    EXPECT_EQ(server({QStringLiteral("--no-administrator"), QStringLiteral("first@example.org")}).status, 0);
    const Finished last = server({QStringLiteral("--no-administrator"), QStringLiteral("second@example.org")});
    EXPECT_EQ(last.status, 1);
    EXPECT_TRUE(last.err.contains(QStringLiteral("last administrator"))) << last.err.toStdString();

    // The administrator made on the shared database signs in like anyone.
    EXPECT_FALSE(adminToken().isEmpty());
}

TEST_F(AdminTest, OnlyAnAdministratorIsServed)
{
    cluster->addUser(QStringLiteral("plain@example.org"), QStringLiteral("plain pw"));
    const QByteArray plain = cluster->signIn(port, QStringLiteral("plain@example.org"), QStringLiteral("plain pw"));
    const QByteArray command = R"({"arguments": ["plain@example.org"]})";
    EXPECT_EQ(cluster->call(port, "POST", QStringLiteral("/v1/admin/confirm"), {}, command).status, 401);
    EXPECT_EQ(cluster->call(port, "POST", QStringLiteral("/v1/admin/confirm"), plain, command).status, 403);
    EXPECT_EQ(cluster->call(port, "POST", QStringLiteral("/v1/admin/blobs"), plain, QByteArray(5000, 'x')).status, 403);
    EXPECT_EQ(cluster->call(port, "POST", QStringLiteral("/v1/admin/frobnicate"), adminToken(), command).status, 404);

    // The refused blob left nothing behind in the store.
    EXPECT_TRUE(QDir(cluster->folder() + QStringLiteral("/store/uploads")).isEmpty());
    const Finished refused = runProgram(
        QStringLiteral(VELURIA_ADMIN_BINARY),
        {QStringLiteral("--server"), QStringLiteral("https://localhost:%1").arg(port), QStringLiteral("--trust"),
         cluster->folder() + QStringLiteral("/tls/server.crt"), QStringLiteral("--admin"),
         QStringLiteral("plain@example.org"), QStringLiteral("confirm"), QStringLiteral("plain@example.org")},
        "plain pw\n");
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(refused.err.contains(QStringLiteral("administrator"))) << refused.err.toStdString();

    // A server whose certificate nobody trusted is refused, and the way out named.
    const Finished untrusted =
        runProgram(QStringLiteral(VELURIA_ADMIN_BINARY),
                   {QStringLiteral("--server"), QStringLiteral("https://localhost:%1").arg(port),
                    QStringLiteral("--admin"), administrator, QStringLiteral("workspaces"), administrator},
                   administratorPassword.toUtf8() + '\n');
    EXPECT_EQ(untrusted.status, 1);
    EXPECT_TRUE(untrusted.err.contains(QStringLiteral("--trust"))) << untrusted.err.toStdString();
}

TEST_F(AdminTest, AnAdministratorWithASecondFactorGivesTheCode)
{
    const QString secret = cluster->addUser(QStringLiteral("guard@example.org"), QStringLiteral("guard pw"), true);
    ASSERT_TRUE(
        cluster->sql(QStringLiteral("UPDATE users SET administrator = true WHERE email = 'guard@example.org'")));
    const QString code = Totp::code(Base32::decode(secret), Totp::stepAt(QDateTime::currentSecsSinceEpoch()));
    const auto run = [&](const QString& typed) {
        return runProgram(QStringLiteral(VELURIA_ADMIN_BINARY),
                          {QStringLiteral("--server"), QStringLiteral("https://localhost:%1").arg(port),
                           QStringLiteral("--trust"), cluster->folder() + QStringLiteral("/tls/server.crt"),
                           QStringLiteral("--admin"), QStringLiteral("guard@example.org"), QStringLiteral("confirm"),
                           QStringLiteral("guard@example.org")},
                          "guard pw\n" + typed.toLatin1() + '\n');
    };
    const Finished wrong = run(code == QLatin1String("000000") ? QStringLiteral("111111") : QStringLiteral("000000"));
    EXPECT_EQ(wrong.status, 1);
    EXPECT_TRUE(wrong.err.contains(QStringLiteral("code"))) << wrong.err.toStdString();
    const Finished right = run(code);
    EXPECT_EQ(right.status, 0) << right.err.toStdString();
}

TEST_F(AdminTest, AFileCutOffOnItsWayLeavesNothingInTheStore)
{
    QSslSocket socket;
    socket.setSslConfiguration(cluster->tls());
    socket.connectToHostEncrypted(QStringLiteral("localhost"), port);
    ASSERT_TRUE(socket.waitForEncrypted(5000));
    socket.write("POST /v1/admin/blobs HTTP/1.1\r\nHost: localhost\r\nAuthorization: Bearer " + adminToken()
                 + "\r\nContent-Length: 1000000\r\n\r\n" + QByteArray(4000, 'x'));
    const QDir uploads(cluster->folder() + QStringLiteral("/store/uploads"));
    EXPECT_TRUE(TestCluster::waitFor([&] {
        socket.waitForBytesWritten(50);
        return !uploads.isEmpty();
    }));
    socket.abort();
    EXPECT_TRUE(TestCluster::waitFor([&] { return uploads.isEmpty(); }));
}

TEST_F(AdminTest, PasswordChangeReachesTheAccountsStreamsAndEndsItsSessions)
{
    cluster->addUser(QStringLiteral("changed@example.org"), QStringLiteral("old pw"));
    const QByteArray token = cluster->signIn(port, QStringLiteral("changed@example.org"), QStringLiteral("old pw"));
    QByteArray received;
    QNetworkReply* stream = cluster->openEvents(port, token);
    QObject::connect(stream, &QNetworkReply::readyRead, [&] { received += stream->readAll(); });
    ASSERT_TRUE(TestCluster::waitFor([&] { return received.contains(": connected"); }));

    const Finished changed =
        remote({QStringLiteral("passwd"), QStringLiteral("changed@example.org"), QStringLiteral("new pw")});
    ASSERT_EQ(changed.status, 0) << changed.err.toStdString();
    EXPECT_TRUE(TestCluster::waitFor([&] { return received.contains("event: password"); }));
    EXPECT_EQ(cluster->call(port, "GET", QStringLiteral("/v1/user"), token).status, 401);
    EXPECT_TRUE(cluster->signIn(port, QStringLiteral("changed@example.org"), QStringLiteral("old pw")).isEmpty());
    EXPECT_FALSE(cluster->signIn(port, QStringLiteral("changed@example.org"), QStringLiteral("new pw")).isEmpty());
    stream->abort();
    stream->deleteLater();
}

TEST_F(AdminTest, CommandsPrintOnTheServerWhatTheyPrintLocally)
{
    QTemporaryDir local;
    const QString folder = local.path() + QStringLiteral("/db");
    QDir().mkpath(folder);
    const QString picture = local.path() + QStringLiteral("/ann.png");
    QImage(8, 8, QImage::Format_RGB32).save(picture);
    const QString poster = local.path() + QStringLiteral("/poster.txt");
    QFile file(poster);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("A poster, version one.\n");
    file.close();
    const QString shots = local.path() + QStringLiteral("/shots");
    QDir().mkpath(shots + QStringLiteral("/day 1"));
    QFile::copy(poster, shots + QStringLiteral("/day 1/one.txt"));

    const QList<QStringList> commands{
        {"add-user", "ann@example.org", "pw ann", "--first", "Ann", "--last", "Lee"},
        {"add-user", "ann@example.org", "pw ann"},
        {"add-user", "not-an-address", "pw"},
        {"add-user", "bob@example.org", "pw bob", "--unconfirmed"},
        {"add-user", "carl@example.org", "pw carl"},
        {"confirm", "nobody@example.org"},
        {"avatar", "ann@example.org", picture},
        {"avatar", "ann@example.org", poster},
        {"passwd", "ann@example.org", ""},
        {"add-workspace", "Posters", "ann@example.org"},
        {"add-workspace", "  ", "ann@example.org"},
        {"add-member", "Posters", "bob@example.org"},
        {"add-member", "Nowhere", "bob@example.org"},
        {"publish", "Posters", "bob@example.org", poster, "--text", "Have a look"},
        {"confirm", "bob@example.org"},
        {"publish", "Posters", "bob@example.org", shots + QLatin1Char('/')},
        {"publish", "Posters", "bob@example.org", poster, "--text", "Have a look"},
        {"publish", "Posters", "carl@example.org", poster},
        {"comment", "Posters", "bob@example.org", "Looks good"},
        {"comment", "Posters", "carl@example.org", "Me too"},
        {"link", "Posters", "poster.txt"},
        {"link", "Posters", "poster.txt", "--revision", "2"},
        {"link", "Posters", "poster.txt", "--revision", "0"},
        {"add-workspace", "Posters", "carl@example.org"},
        {"link", "Posters", "poster.txt"},
        {"workspaces", "ann@example.org"},
        {"enable-2fa", "carl@example.org"},
        {"add-member", "Posters"},
        {"frobnicate"},
        {"demo"},
        {"demo"},
        {"workspaces", "demo@veluria.local"},
    };
    QString link;
    for (const QStringList& command : commands) {
        const Finished here = runProgram(QStringLiteral(VELURIA_ADMIN_BINARY),
                                         QStringList{QStringLiteral("--database"), folder} + command, {}, local.path());
        const Finished there = remote(command, local.path());
        SCOPED_TRACE(command.join(QLatin1Char(' ')).toStdString());
        EXPECT_EQ(there.status, here.status) << there.err.toStdString();
        EXPECT_EQ(comparable(there.out).toStdString(), comparable(here.out).toStdString());
        EXPECT_EQ(comparable(there.err).toStdString(), comparable(here.err).toStdString());
        if (command.first() == QLatin1String("publish") && there.status == 0)
            link = there.out.trimmed();
    }

    // The printed link leads to the very bytes that were published.
    const QString revision = QUrlQuery(QUrl(link)).queryItemValue(QStringLiteral("revision"));
    ASSERT_FALSE(revision.isEmpty()) << link.toStdString();
    const QByteArray ann = cluster->signIn(port, QStringLiteral("ann@example.org"), QStringLiteral("pw ann"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(cluster->call(port, "GET", QStringLiteral("/v1/revisions/%1/content").arg(revision), ann).body,
              file.readAll());

    // Ann's picture: hers and her fellow members' to see, nobody else's.
    const QString annId = cluster->call(port, "GET", QStringLiteral("/v1/user"), ann).json["id"].toString();
    const QString avatar = QStringLiteral("/v1/users/%1/avatar").arg(annId);
    const QByteArray bob = cluster->signIn(port, QStringLiteral("bob@example.org"), QStringLiteral("pw bob"));
    cluster->addUser(QStringLiteral("stranger@example.org"), QStringLiteral("pw stranger"));
    const QByteArray stranger =
        cluster->signIn(port, QStringLiteral("stranger@example.org"), QStringLiteral("pw stranger"));
    QFile png(picture);
    ASSERT_TRUE(png.open(QIODevice::ReadOnly));
    const auto seen = cluster->call(port, "GET", avatar, bob);
    EXPECT_EQ(seen.body, png.readAll());
    EXPECT_EQ(seen.header("Content-Type"), "image/png");
    EXPECT_EQ(cluster->call(port, "GET", avatar, stranger).status, 404);
    const QString workspace = QUrlQuery(QUrl(link)).queryItemValue(QStringLiteral("workspace"));
    const QJsonArray members =
        cluster->call(port, "GET", QStringLiteral("/v1/workspaces/%1/members").arg(workspace), bob)
            .json["members"]
            .toArray();
    ASSERT_EQ(members.size(), 2);
    EXPECT_TRUE(members[0]["hasAvatar"].toBool());
    EXPECT_FALSE(members[1]["hasAvatar"].toBool());
    // A folder is published as a folder, under its own name.
    const QJsonArray publications =
        cluster->call(port, "GET", QStringLiteral("/v1/workspaces/%1/publications").arg(workspace), bob)
            .json["publications"]
            .toArray();
    const auto shotsIn = std::find_if(publications.begin(), publications.end(), [](const QJsonValue& publication) {
        return publication["revision"]["fileName"] == QLatin1String("shots");
    });
    ASSERT_NE(shotsIn, publications.end());
    EXPECT_TRUE(
        (*shotsIn).toObject().value(QStringLiteral("revision")).toObject().value(QStringLiteral("folder")).toBool());
}

TEST_F(AdminTest, ManifestIsServedOnlyWhileValid)
{
    const QString manifest = cluster->folder() + QStringLiteral("/manifest.json");
    QSettings(cluster->configPath(), QSettings::IniFormat).setValue(QStringLiteral("server/manifest"), manifest);
    const quint16 other = cluster->startServer();
    const auto write = [&](const QByteArray& text) {
        QFile file(manifest);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(text);
    };
    EXPECT_EQ(cluster->call(other, "GET", QStringLiteral("/v1/manifest"), {}).status, 404);
    const QByteArray good = R"({"latestVersion": "2.1.0", "latestVersionNice": "2.1"})";
    write(good);
    EXPECT_EQ(cluster->call(other, "GET", QStringLiteral("/v1/manifest"), {}).body, good);
    write(R"({"latestVersion": "two"})");
    EXPECT_EQ(cluster->call(other, "GET", QStringLiteral("/v1/manifest"), {}).status, 404);
    write("{not json");
    EXPECT_EQ(cluster->call(other, "GET", QStringLiteral("/v1/manifest"), {}).status, 404);
    // The first server was started without a manifest and stays so.
    EXPECT_EQ(cluster->call(port, "GET", QStringLiteral("/v1/manifest"), {}).status, 404);
}

} // namespace
