#include "BundleFixture.h"
#include "LoopbackServer.h"
#include "PrivateHome.h"

#include "installer/ClientRestart.h"
#include "installer/UpdateInstaller.h"

#include <QCryptographicHash>
#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>

namespace {

QByteArray manifest(const QUrl& package, const QByteArray& bytes)
{
    return R"({"latestVersion": "2.1.0", "latestVersionNice": "2.1", "packageURL": ")" + package.toEncoded()
        + R"(", "sha256": ")" + QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex() + "\"}";
}

// Runs one update of the bundle against the manifest, as veluria-installer
// does, restarting the client for real.
UpdateInstaller::Outcome update(const BundleFixture& bundle, const QUrl& manifestURL)
{
    UpdateInstaller installer(InstallLocation::forProgramFolder(bundle.binFolder("2.0.0")), "2.0.0");
    installer.setRestart(&ClientRestart::restart);
    std::optional<UpdateInstaller::Outcome> outcome;
    installer.run(manifestURL, [&](const UpdateInstaller::Outcome& o) { outcome = o; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return outcome.has_value(); }, 60000));
    return outcome.value_or(UpdateInstaller::Outcome{});
}

// Nothing of a failed update is left: the old version is in use, alone.
void expectUntouched(const BundleFixture& bundle)
{
    EXPECT_EQ(bundle.currentVersion(), "2.0.0");
    EXPECT_EQ(QDir(bundle.root()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList({"current", "veluria-2.0.0"}));
}

} // namespace

// A good package is unpacked beside the old version, "current" moves over to
// it and the new client starts; the old tree stays until the next update,
// older ones go; a login now starts the new version.
TEST(InstallerTest, AGoodPackageReplacesTheBundleAndRestartsTheClient)
{
    PrivateHome home;
    BundleFixture bundle;
    home.write(".config/autostart/veluria.desktop",
               ("[Desktop Entry]\nExec=" + bundle.binFolder("2.0.0") + "/veluria --autostart\n").toUtf8());
    BundleFixture::makeTree(bundle.root(), "1.9.0");
    ASSERT_EQ(InstallLocation::forProgramFolder(bundle.binFolder("2.0.0")).kind(), InstallLocation::Kind::Bundle);
    LoopbackServer server;
    const QByteArray package = bundle.archive("2.1.0");
    server.serve("/veluria-2.1.0.tar.gz", package);
    server.serve("/manifest.json", manifest(server.url("/veluria-2.1.0.tar.gz"), package));

    const UpdateInstaller::Outcome outcome = update(bundle, server.url("/manifest.json"));
    EXPECT_TRUE(outcome.installed) << outcome.message.toStdString();
    EXPECT_EQ(bundle.currentVersion(), "2.1.0");
    EXPECT_TRUE(QFileInfo::exists(bundle.binFolder("2.0.0") + "/veluria"));
    EXPECT_FALSE(QFileInfo::exists(bundle.binFolder("1.9.0")));
    EXPECT_TRUE(home.read(".config/autostart/veluria.desktop")
                    .contains("\nExec=" + bundle.root() + "/current/bin/veluria --autostart\n"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return bundle.startedVersion() == "2.1.0"; }, 10000));

    // The manifest now announces the version in use: nothing to do.
    UpdateInstaller again(InstallLocation::forProgramFolder(bundle.root() + "/current/bin"), "2.1.0");
    std::optional<UpdateInstaller::Outcome> second;
    again.run(server.url("/manifest.json"), [&](const UpdateInstaller::Outcome& o) { second = o; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return second.has_value(); }, 10000));
    EXPECT_FALSE(second->installed);
    EXPECT_TRUE(second->message.isNull());
}

// Whatever goes wrong before the swap leaves the installed version as it
// was, and says what went wrong.
TEST(InstallerTest, AFailedUpdateLeavesTheInstalledVersionUntouched)
{
    BundleFixture bundle;
    LoopbackServer server;
    const QByteArray package = bundle.archive("2.1.0");
    QByteArray tampered = package;
    tampered[tampered.size() / 2] = char(tampered[tampered.size() / 2] ^ 0x55);
    const QByteArray page = "<html><body>Download Veluria</body></html>";
    const QByteArray escaping = bundle.archive("2.1.0", {"veluria-2.1.0/../evil"});
    server.serve("/tampered.tar.gz", tampered);
    server.serve("/page.tar.gz", page);
    server.serve("/escaping.tar.gz", escaping);
    server.serve("/escaping.json", manifest(server.url("/escaping.tar.gz"), escaping));
    server.serve("/bad-checksum.json", manifest(server.url("/tampered.tar.gz"), package));
    server.serve("/not-an-archive.json", manifest(server.url("/page.tar.gz"), page));
    server.serve("/missing-package.json", manifest(server.url("/gone.tar.gz"), package));
    server.serve("/not-json.json", "<html>");

    const struct
    {
        QUrl manifest;
        const char* says;
    } cases[] = {
        {server.url("/bad-checksum.json"), "SHA-256"},
        {server.url("/not-an-archive.json"), "not a bundle archive"},
        {server.url("/escaping.json"), "not one bundle folder"},
        {server.url("/missing-package.json"), "can't be downloaded"},
        {server.url("/not-json.json"), "manifest can't be read"},
        {QUrl("http://127.0.0.1:1/manifest.json"), "manifest can't be read"},
    };
    for (const auto& c : cases) {
        const UpdateInstaller::Outcome outcome = update(bundle, c.manifest);
        EXPECT_FALSE(outcome.installed) << c.says;
        EXPECT_TRUE(outcome.message.contains(c.says)) << outcome.message.toStdString();
        expectUntouched(bundle);
    }
    EXPECT_TRUE(bundle.startedVersion().isEmpty());
}
