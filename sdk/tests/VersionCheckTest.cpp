#include "ServiceFixture.h"

#include "base/LibrarySettings.h"
#include "versions/LocalVersionChecker.h"

#include "service/VLREnvironment.h"
#include "service/VLRVersionInfo.h"

#include <QSettings>
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

Check run(const std::shared_ptr<VLRVersionChecker>& checker)
{
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

TEST(VersionCheck, WithoutAManifestTheRunningVersionIsCurrent)
{
    const Check check = run(std::make_shared<LocalVersionChecker>(QUrl()));
    EXPECT_FALSE(check.unsupported);
    EXPECT_FALSE(check.outOfDate);
    EXPECT_FALSE(check.checkError.has_value());
    ASSERT_NE(check.info, nullptr);
    EXPECT_EQ(check.info->currentVersion(), QStringLiteral("2.0.0"));
    EXPECT_EQ(check.info->currentVersion(), VLREnvironment::appVersion());
    EXPECT_EQ(check.info->latestVersionNice(), QStringLiteral("2.0.0"));
    EXPECT_EQ(check.info->releaseNotesHTML(), QStringLiteral(""));
    EXPECT_TRUE(check.info->termsOfService().isNull());
    EXPECT_TRUE(check.info->downloadPageURL().isEmpty());
    EXPECT_TRUE(check.onGuiThread);
}

TEST(VersionCheck, AManifestSaysWhatIsNewerAndWhatIsNoLongerSupported)
{
    QTemporaryDir folder;
    const QString newer = ServiceFixture::writeFile(folder.path() + QStringLiteral("/newer.json"), R"json({
        "latestVersion": "2.1.0", "latestVersionNice": "2.1 (spring)", "minimumVersion": "1.5",
        "releaseNotesHTML": "<p>Faster uploads</p>", "termsOfService": "Be nice.",
        "downloadPageURL": "https://veluria.example.org/download"})json");
    const Check outOfDate = run(std::make_shared<LocalVersionChecker>(QUrl::fromLocalFile(newer)));
    EXPECT_FALSE(outOfDate.unsupported);
    EXPECT_TRUE(outOfDate.outOfDate);
    ASSERT_NE(outOfDate.info, nullptr);
    EXPECT_EQ(outOfDate.info->currentVersion(), QStringLiteral("2.0.0"));
    EXPECT_EQ(outOfDate.info->latestVersionNice(), QStringLiteral("2.1 (spring)"));
    EXPECT_EQ(outOfDate.info->releaseNotesHTML(), QStringLiteral("<p>Faster uploads</p>"));
    EXPECT_EQ(outOfDate.info->termsOfService(), QStringLiteral("Be nice."));
    EXPECT_EQ(outOfDate.info->downloadPageURL(), QUrl(QStringLiteral("https://veluria.example.org/download")));
    EXPECT_TRUE(outOfDate.onGuiThread);

    const QString refused = ServiceFixture::writeFile(folder.path() + QStringLiteral("/refused.json"),
                                                      R"json({"latestVersion": "3.0", "minimumVersion": "2.5"})json");
    const Check unsupported = run(std::make_shared<LocalVersionChecker>(QUrl::fromLocalFile(refused)));
    EXPECT_TRUE(unsupported.unsupported);
    EXPECT_TRUE(unsupported.outOfDate);
    EXPECT_EQ(unsupported.info->latestVersionNice(), QStringLiteral("3.0"));
    EXPECT_TRUE(unsupported.info->termsOfService().isNull());

    const QString same = ServiceFixture::writeFile(folder.path() + QStringLiteral("/same.json"),
                                                   R"json({"latestVersion": "2.0.0"})json");
    const Check current = run(std::make_shared<LocalVersionChecker>(QUrl::fromLocalFile(same)));
    EXPECT_FALSE(current.unsupported);
    EXPECT_FALSE(current.outOfDate);
}

TEST(VersionCheck, AnUnreadableManifestIsAnError)
{
    QTemporaryDir folder;
    const QString broken = ServiceFixture::writeFile(folder.path() + QStringLiteral("/broken.json"), "{\"latest");
    const Check malformed = run(std::make_shared<LocalVersionChecker>(QUrl::fromLocalFile(broken)));
    ASSERT_TRUE(malformed.checkError.has_value());
    EXPECT_EQ(malformed.checkError->code, 38);
    EXPECT_TRUE(malformed.checkError->localizedDescription.startsWith(
        QStringLiteral("The version information could not be read: ")));
    EXPECT_FALSE(malformed.unsupported);
    EXPECT_FALSE(malformed.outOfDate);
    EXPECT_TRUE(malformed.infoError.has_value());
    EXPECT_EQ(malformed.info, nullptr);

    const QString nameless = ServiceFixture::writeFile(folder.path() + QStringLiteral("/nameless.json"), "{}");
    EXPECT_EQ(run(std::make_shared<LocalVersionChecker>(QUrl::fromLocalFile(nameless))).checkError->localizedDescription,
              QStringLiteral("The version information could not be read: it names no latest version"));

    const Check missing = run(std::make_shared<LocalVersionChecker>(QUrl::fromLocalFile(folder.path() + QStringLiteral("/none.json"))));
    ASSERT_TRUE(missing.checkError.has_value());
    EXPECT_EQ(missing.checkError->code, 38);
}

TEST(VersionCheck, TheManifestsPlaceComesFromTheLibrarysSettings)
{
    QTemporaryDir folder;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path());
    EXPECT_TRUE(LibrarySettings::versionManifest().isEmpty());
    {
        QSettings settings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Veluria"),
                           QStringLiteral("VeluriaService"));
        settings.setValue(QStringLiteral("versionManifest"), QStringLiteral("/srv/veluria/version.json"));
    }
    EXPECT_EQ(LibrarySettings::versionManifest(), QUrl::fromLocalFile(QStringLiteral("/srv/veluria/version.json")));
    {
        QSettings settings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Veluria"),
                           QStringLiteral("VeluriaService"));
        settings.setValue(QStringLiteral("versionManifest"), QStringLiteral("https://veluria.example.org/version.json"));
    }
    EXPECT_EQ(LibrarySettings::versionManifest(), QUrl(QStringLiteral("https://veluria.example.org/version.json")));
}

} // namespace
