#include "ServiceFixture.h"

#include "sdk/store/ContentStore.h"
#include "sdk/store/ResumableCopy.h"
#include "sdk/store/Sha256.h"
#include "sdk/transfers/DownloadLink.h"

#include "service/VLRTransferReporting.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

QByteArray copyResult(
    const QString& from, const QString& to, qint64* reported = nullptr,
    ResumableCopy::Outcome expected = ResumableCopy::Outcome::Done,
    const std::function<bool()>& shouldStop = [] { return false; })
{
    qint64 bytes = 0;
    ResumableCopy copy(from, to, shouldStop, [&bytes](qint64 n) { bytes += n; });
    EXPECT_EQ(copy.run(), expected) << copy.failure().toStdString();
    if (reported)
        *reported = bytes;
    return copy.digest();
}

TEST(ResumableCopies, GoOnFromWhatMatchesAndRewriteWhatDoesNot)
{
    QTemporaryDir folder;
    const QByteArray content = ServiceFixture::randomBytes(3 * ResumableCopy::chunkSize + 17);
    const QString source = ServiceFixture::writeFile(folder.path() + QStringLiteral("/source"), content);
    const QString partial = folder.path() + QStringLiteral("/partial");

    // Two good chunks left by an interrupted copy, then torn garbage.
    ServiceFixture::writeFile(partial, content.left(2 * ResumableCopy::chunkSize) + QByteArray(1000, 'x'));
    qint64 reported = 0;
    EXPECT_EQ(copyResult(source, partial, &reported), Sha256::of(content));
    EXPECT_EQ(ServiceFixture::readFile(partial), content);
    EXPECT_EQ(reported, content.size());

    // A partial that differs from the first byte on is all written again.
    QByteArray wrong = content;
    wrong[0] = char(~wrong[0]);
    ServiceFixture::writeFile(partial, wrong);
    EXPECT_EQ(copyResult(source, partial), Sha256::of(content));
    EXPECT_EQ(ServiceFixture::readFile(partial), content);

    // A partial longer than the source is cut to it.
    ServiceFixture::writeFile(partial, content + "tail");
    EXPECT_EQ(copyResult(source, partial), Sha256::of(content));
    EXPECT_EQ(ServiceFixture::readFile(partial).size(), content.size());

    // Stopped between two steps, it keeps what it copied, and goes on from
    // there the next time.
    const QByteArray large = ServiceFixture::randomBytes(2 * ResumableCopy::kernelStep + 17);
    ServiceFixture::writeFile(source, large);
    QFile::remove(partial);
    int asked = 0;
    copyResult(source, partial, nullptr, ResumableCopy::Outcome::Stopped, [&] { return ++asked > 2; });
    EXPECT_EQ(ServiceFixture::readFile(partial), large.left(2 * ResumableCopy::kernelStep));
    EXPECT_EQ(copyResult(source, partial, &reported), Sha256::of(large));
    EXPECT_EQ(reported, large.size());
    EXPECT_EQ(ServiceFixture::readFile(partial), large);
}

TEST(ResumableCopies, ASourceThatChangesUnderTheCopyFails)
{
    QTemporaryDir folder;
    const QString source =
        ServiceFixture::writeFile(folder.path() + QStringLiteral("/source"), ServiceFixture::randomBytes(1000000));
    bool touched = false;
    ResumableCopy copy(
        source, folder.path() + QStringLiteral("/partial"),
        [&] {
            if (!touched) {
                touched = true;
                QFile file(source);
                file.open(QIODevice::Append);
                file.write("more");
            }
            return false;
        },
        [](qint64) {});
    EXPECT_EQ(copy.run(), ResumableCopy::Outcome::Failed);
    EXPECT_TRUE(copy.sourceChanged());
    EXPECT_EQ(copy.failure(), QStringLiteral("source"));

    ResumableCopy missing(
        folder.path() + QStringLiteral("/none"), folder.path() + QStringLiteral("/p2"), [] { return false; },
        [](qint64) {});
    EXPECT_EQ(missing.run(), ResumableCopy::Outcome::Failed);
    EXPECT_TRUE(missing.failedOnSource());
    EXPECT_EQ(missing.failure(), QStringLiteral("\"none\": No such file or directory"));
}

TEST(ContentStores, KeepEachContentOnceUnderItsHash)
{
    QTemporaryDir folder;
    const ContentStore store(folder.path());
    QString failure;
    ASSERT_TRUE(store.prepare(&failure));
    const QByteArray digest = store.put("hello", &failure);
    EXPECT_EQ(store.pathOf(digest), folder.path() + QStringLiteral("/Store/2c/") + QString::fromLatin1(digest));
    EXPECT_EQ(store.put("hello", &failure), digest);

    // The same content committed again: the partial goes, the content stays.
    const QString partial = ServiceFixture::writeFile(store.partialPath(QStringLiteral("again")), "hello");
    EXPECT_TRUE(store.commit(partial, digest, &failure));
    EXPECT_FALSE(QFileInfo::exists(partial));
    EXPECT_EQ(store.read(digest), QByteArray("hello"));
    EXPECT_FALSE(store.commit(partial, "not-a-digest", &failure));

    // A content damaged on disk is not handed out.
    ServiceFixture::writeFile(store.pathOf(digest), "hellO");
    EXPECT_TRUE(store.read(digest).isNull());
}

using DamagedContent = ServiceFixture;

TEST_F(DamagedContent, ADamagedContentFailsItsDownloadAndLeavesNothing)
{
    const QString ann = addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    const QString workspace = addWorkspace(QStringLiteral("W"), ann);
    const ContentStore store(databaseFolder());
    const QByteArray digest = store.put(randomBytes(600000), nullptr);
    const QString revision =
        WorkspaceStore(database())
            .addRevision(workspace, ann, QStringLiteral("photo.raw"), QString::fromLatin1(digest), false, 600000, {});
    QFile blob(store.pathOf(digest));
    ASSERT_TRUE(blob.open(QIODevice::ReadWrite));
    blob.seek(300000);
    blob.write("bit rot");
    blob.close();

    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    VLRTransferReportingPtr transfer;
    session->downloadUrl(DownloadLink::make(workspace, revision),
                         [&](const VLRTransferReportingPtr& t, const vlr::OptionalError&) { transfer = t; });
    ASSERT_TRUE(waitUntil([&] { return transfer && transfer->isFinished(); }));
    ASSERT_TRUE(transfer->error().has_value());
    EXPECT_EQ(transfer->error()->code, 34);
    EXPECT_EQ(transfer->error()->localizedDescription, QStringLiteral("The stored copy of \"photo.raw\" is damaged."));
    EXPECT_EQ(QDir(home() + QStringLiteral("/Veluria/W")).entryList(QDir::Files | QDir::Hidden), QStringList());
}

} // namespace
