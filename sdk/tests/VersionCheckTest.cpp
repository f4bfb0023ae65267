#include "ServiceFixture.h"

#include "sdk/versions/LocalVersionChecker.h"

#include "service/VLRVersionInfo.h"

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

// Checks the version against the manifest at the path (none: no manifest),
// then asks for the version information, as the client does.
Check run(const QString& manifest)
{
    const auto checker =
        std::make_shared<LocalVersionChecker>(manifest.isEmpty() ? QUrl() : QUrl::fromLocalFile(manifest));
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
}

} // namespace
