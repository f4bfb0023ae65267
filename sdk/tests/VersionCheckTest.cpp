#include "ServiceFixture.h"

#include "sdk/versions/LocalVersionChecker.h"

#include "service/VLRVersionInfo.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

namespace {

struct Check
{
    bool unsupported = false;
    bool outOfDate = false;
    vlr::OptionalError checkError;
    vlr::OptionalError infoError;
    VLRVersionInfoPtr info;
    bool onGuiThread = true;
};

// A web server on loopback that answers every request with the same body.
class ManifestServer
{
public:
    explicit ManifestServer(const QByteArray& body)
    {
        server.listen(QHostAddress::LocalHost);
        QObject::connect(&server, &QTcpServer::newConnection, [this, body] {
            QTcpSocket* socket = server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket, body] {
                socket->readAll();
                socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: "
                              + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
                socket->disconnectFromHost();
            });
        });
    }
    QUrl url() const { return QUrl(QStringLiteral("http://127.0.0.1:%1/manifest.json").arg(server.serverPort())); }

private:
    QTcpServer server;
};

// Checks the version against the manifest at the address (none: no
// manifest), then asks for the version information, as the client does.
Check run(const QUrl& manifest)
{
    const auto checker = std::make_shared<LocalVersionChecker>(manifest);
    Check result;
    int calls = 0;
    auto gui = [&] { result.onGuiThread = result.onGuiThread && QThread::currentThread() == qApp->thread(); };
    checker->checkVersion([&](bool unsupported, bool outOfDate, const vlr::OptionalError& error) {
        gui();
        result.unsupported = unsupported;
        result.outOfDate = outOfDate;
        result.checkError = error;
        ++calls;
        checker->getVersionInfo([&](const vlr::OptionalError& error, const VLRVersionInfoPtr& info) {
            gui();
            result.infoError = error;
            result.info = info;
            ++calls;
        });
    });
    EXPECT_TRUE(ServiceFixture::waitUntil([&] { return calls == 2; }));
    return result;
}

Check run(const QString& manifest)
{
    return run(manifest.isEmpty() ? QUrl() : QUrl::fromLocalFile(manifest));
}

QString reason(const Check& check)
{
    return check.checkError ? check.checkError->localizedDescription : QString();
}

TEST(VersionCheck, AManifestSaysWhatIsNewerAndWhatIsNoLongerSupported)
{
    const Check none = run(QString());
    EXPECT_FALSE(none.unsupported || none.outOfDate || none.checkError.has_value());
    ASSERT_NE(none.info, nullptr);
    EXPECT_EQ(none.info->currentVersion(), QStringLiteral("2.0.0"));
    EXPECT_EQ(none.info->latestVersionNice(), QStringLiteral("2.0.0"));
    EXPECT_TRUE(none.onGuiThread);

    QTemporaryDir folder;
    const Check newer = run(ServiceFixture::writeFile(folder.path() + QStringLiteral("/newer.json"), R"json({
        "latestVersion": "2.1.0", "latestVersionNice": "2.1 (spring)", "minimumVersion": "1.5",
        "releaseNotesHTML": "<p>Faster uploads</p>", "termsOfService": "Be nice.",
        "downloadPageURL": "https://veluria.example.org/download"})json"));
    EXPECT_FALSE(newer.unsupported);
    EXPECT_TRUE(newer.outOfDate);
    ASSERT_NE(newer.info, nullptr);
    EXPECT_EQ(newer.info->latestVersionNice(), QStringLiteral("2.1 (spring)"));
    EXPECT_EQ(newer.info->releaseNotesHTML(), QStringLiteral("<p>Faster uploads</p>"));
    EXPECT_EQ(newer.info->termsOfService(), QStringLiteral("Be nice."));
    EXPECT_EQ(newer.info->downloadPageURL(), QUrl(QStringLiteral("https://veluria.example.org/download")));
    EXPECT_TRUE(newer.onGuiThread);

    const Check unsupported =
        run(ServiceFixture::writeFile(folder.path() + QStringLiteral("/refused.json"),
                                      R"json({"latestVersion": "3.0", "minimumVersion": "2.5"})json"));
    EXPECT_TRUE(unsupported.unsupported && unsupported.outOfDate);
    EXPECT_EQ(unsupported.info->latestVersionNice(), QStringLiteral("3.0"));
    EXPECT_TRUE(unsupported.info->termsOfService().isNull());

    const Check same = run(ServiceFixture::writeFile(folder.path() + QStringLiteral("/same.json"),
                                                     R"json({"latestVersion": "2.0.0"})json"));
    EXPECT_FALSE(same.unsupported || same.outOfDate);
}

TEST(VersionCheck, AnUnreadableManifestIsAnError)
{
    QTemporaryDir folder;
    const Check malformed = run(ServiceFixture::writeFile(folder.path() + QStringLiteral("/broken.json"), "{\"latest"));
    ASSERT_TRUE(malformed.checkError.has_value());
    EXPECT_EQ(malformed.checkError->code, 38);
    EXPECT_TRUE(malformed.checkError->localizedDescription.startsWith(
        QStringLiteral("The version information could not be read: ")));
    EXPECT_FALSE(malformed.unsupported || malformed.outOfDate);
    EXPECT_TRUE(malformed.infoError.has_value());
    EXPECT_EQ(malformed.info, nullptr);

    const QString nameless = ServiceFixture::writeFile(folder.path() + QStringLiteral("/nameless.json"), "{}");
    EXPECT_EQ(run(nameless).checkError->localizedDescription,
              QStringLiteral("The version information could not be read: it names no latest version"));
    EXPECT_EQ(run(folder.path() + QStringLiteral("/none.json")).checkError->code, 38);

    // Versions are numbers: a version with anything else in it is no version,
    // and 2.0.10 is newer than 2.0.9.
    const QList<QPair<QByteArray, QString>> refused{
        {R"({"latestVersion": "2.1.0-beta"})", R"(the latest version "2.1.0-beta" is not a version)"},
        {R"({"latestVersion": "3", "minimumVersion": "x2"})", R"(the minimum version "x2" is not a version)"},
        {R"({"latestVersion": "3", "sha256": "abc"})", "its sha256 is not 64 hexadecimal digits"},
        {"[1, 2]", "it is not a JSON object"}};
    for (const auto& [json, why] : refused)
        EXPECT_EQ(reason(run(ServiceFixture::writeFile(folder.path() + "/refused.json", json))),
                  "The version information could not be read: " + why);
    const Check numeric =
        run(ServiceFixture::writeFile(folder.path() + QStringLiteral("/numeric.json"),
                                      R"json({"latestVersion": "2.0.10", "minimumVersion": "2.0.9"})json"));
    EXPECT_TRUE(numeric.outOfDate && numeric.unsupported);

    // A huge manifest is refused unread, from a file as from a server.
    const QByteArray huge =
        "{\"latestVersion\": \"9.0\", \"releaseNotesHTML\": \"" + QByteArray(VersionManifest::MaximumSize, 'x') + "\"}";
    EXPECT_TRUE(reason(run(ServiceFixture::writeFile(folder.path() + QStringLiteral("/huge.json"), huge)))
                    .endsWith(QStringLiteral("it is larger than 1048576 bytes")));
    ManifestServer hugeServer(huge);
    EXPECT_TRUE(reason(run(hugeServer.url())).endsWith(QStringLiteral("it is larger than 1048576 bytes")));

    // Only files and web addresses are read.
    EXPECT_TRUE(reason(run(QUrl(QStringLiteral("ftp://example.org/m.json"))))
                    .endsWith(QStringLiteral("it is neither a file nor a web address")));
}

TEST(VersionCheck, AManifestComesFromAWebServerWithThePackageForTheInstaller)
{
    const QByteArray digest = QByteArray(64, 'A');
    ManifestServer server(R"json({"latestVersion": "2.0.1", "releaseNotesHTML": "<script>alert(1)</script>",
        "packageURL": "https://veluria.example.org/veluria-2.0.1.tar.gz", "sha256": ")json"
                          + digest + "\"}");
    const Check check = run(server.url());
    EXPECT_FALSE(check.checkError.has_value());
    EXPECT_TRUE(check.outOfDate);
    ASSERT_NE(check.info, nullptr);
    // The notes go to the client as they are: showing them safely is its part.
    EXPECT_EQ(check.info->releaseNotesHTML(), QStringLiteral("<script>alert(1)</script>"));

    vlr::OptionalError error;
    const VersionManifest manifest = VersionManifest::parse(
        R"json({"latestVersion": "2.0.1", "packageURL": "https://h/p.tar.gz", "sha256": ")json" + digest + "\"}",
        QStringLiteral("2.0.0"), &error);
    EXPECT_FALSE(error.has_value());
    EXPECT_EQ(manifest.packageURL(), QUrl(QStringLiteral("https://h/p.tar.gz")));
    EXPECT_EQ(manifest.sha256(), QString(64, QLatin1Char('a')));

    {
        // The client keeps its checker only in its handlers, as the one
        // reference left when the answer comes.
        bool infoCame = false;
        auto checker = std::make_shared<LocalVersionChecker>(server.url());
        checker->checkVersion([checker, &infoCame](bool, bool, const vlr::OptionalError&) {
            checker->getVersionInfo(
                [&infoCame](const vlr::OptionalError&, const VLRVersionInfoPtr&) { infoCame = true; });
        });
        checker.reset();
        EXPECT_TRUE(ServiceFixture::waitUntil([&] { return infoCame; }));
    }
    // A server that is not there is an error, not a wait.
    QTcpServer closed;
    closed.listen(QHostAddress::LocalHost);
    const QUrl gone(QStringLiteral("http://127.0.0.1:%1/m.json").arg(closed.serverPort()));
    closed.close();
    EXPECT_EQ(run(gone).checkError->code, 38);
}

} // namespace
