#include "ChildProcess.h"
#include "ServiceFixture.h"

#include "sdk/base/SqlStatement.h"
#include "sdk/store/ContentStore.h"
#include "sdk/store/Sha256.h"
#include "sdk/transfers/DownloadLink.h"
#include "sdk/transfers/QueuedTransfer.h"

#include "service/VLRTransferQueue.h"
#include "service/VLRTransferReporting.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

namespace {

class CrossProcess : public ServiceFixture
{
protected:
    void SetUp() override
    {
        ServiceFixture::SetUp();
        ann = addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"), QStringLiteral("Ann"));
        shared = addWorkspace(QStringLiteral("Shared"), ann);
    }

    QString ann;
    QString shared;
};

TEST_F(CrossProcess, AnUploadKilledHalfwayIsBackAfterARestartAndFinishes)
{
    const QByteArray content = randomBytes(160 * 1024 * 1024);
    const QString file = writeFile(home() + QStringLiteral("/huge.bin"), content);
    QProcessEnvironment extra;
    extra.insert(QStringLiteral("VELURIA_CHILD_WORKSPACE"), shared);
    extra.insert(QStringLiteral("VELURIA_CHILD_FILE"), file);
    {
        ChildProcess client(QStringLiteral("SlowUploader"), databaseFolder(), home(), extra);
        ASSERT_TRUE(client.waitForLine(QStringLiteral("copying"))) << client.output().toStdString();
        client.killHard();
    }
    // Whatever the kill left, no content stands under a name that isn't its
    // own hash.
    auto checkStore = [&] {
        QDirIterator blobs(databaseFolder() + QStringLiteral("/Store"), QDir::Files, QDirIterator::Subdirectories);
        while (blobs.hasNext()) {
            const QString path = blobs.next();
            if (QFileInfo(path).path().endsWith(QLatin1String("/tmp")))
                continue;
            EXPECT_EQ(Sha256::of(readFile(path)), QFileInfo(path).fileName().toLatin1());
        }
    };
    checkStore();

    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    ASSERT_EQ(session->uploader()->transfers().size(), 1);
    const VLRTransferReportingPtr resumed = session->uploader()->transfers().at(0);
    EXPECT_EQ(resumed->fileURL(), QUrl::fromLocalFile(file));
    EXPECT_FALSE(resumed->isFinished());
    ASSERT_TRUE(waitUntil([&] { return resumed->isFinished(); }, 120000));
    ASSERT_FALSE(resumed->error().has_value()) << resumed->error()->localizedDescription.toStdString();
    checkStore();
    EXPECT_TRUE(QDir(databaseFolder() + QStringLiteral("/Store/tmp")).entryList(QDir::Files).isEmpty());

    const auto& job = std::static_pointer_cast<QueuedTransfer>(resumed)->job();
    VLRTransferReportingPtr down;
    session->downloadUrl(DownloadLink::make(job.workspaceId, job.revisionId),
                         [&](const VLRTransferReportingPtr& transfer, const vlr::OptionalError&) { down = transfer; });
    ASSERT_TRUE(waitUntil([&] { return down && down->isFinished(); }, 120000));
    EXPECT_TRUE(readFile(home() + QStringLiteral("/Veluria/Shared/huge.bin")) == content);
}

// Every revision in the database stands on contents that are all in the
// store, whole: a folder's manifest and each file it lists.
void expectEveryRevisionWhole(Database& database, const ContentStore& store)
{
    SqlStatement revisions(database.handle(), "SELECT content, is_folder FROM revisions");
    while (revisions.next()) {
        const QByteArray content = store.read(revisions.text(0).toLatin1());
        ASSERT_FALSE(content.isNull()) << revisions.text(0).toStdString();
        if (revisions.integer(1) == 0)
            continue;
        const QJsonArray entries = QJsonDocument::fromJson(content).object().value(QStringLiteral("entries")).toArray();
        for (const QJsonValue& entry : entries) {
            const QByteArray digest = entry.toObject().value(QStringLiteral("content")).toString().toLatin1();
            EXPECT_EQ(Sha256::of(ServiceFixture::readFile(store.pathOf(digest))), digest);
        }
    }
}

TEST_F(CrossProcess, AFolderKilledWhileItsContentsGoInPlaceIsNeverPublishedHalf)
{
    const QString folder = home() + QStringLiteral("/Sketches");
    QDir().mkpath(folder);
    for (int i = 0; i < 400; ++i)
        writeFile(QStringLiteral("%1/sketch %2.txt").arg(folder).arg(i), randomBytes(4096));
    QProcessEnvironment extra;
    extra.insert(QStringLiteral("VELURIA_CHILD_WORKSPACE"), shared);
    extra.insert(QStringLiteral("VELURIA_CHILD_FILE"), folder);
    const ContentStore store(databaseFolder());
    // The first content under its name means the rest are being placed, and
    // the revision is about to be recorded: the client dies right there.
    auto placing = [&] {
        const QStringList subfolders =
            QDir(databaseFolder() + QStringLiteral("/Store")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QString& name : subfolders)
            if (name != QLatin1String("tmp")
                && !QDir(databaseFolder() + QStringLiteral("/Store/") + name).isEmpty(QDir::Files))
                return true;
        return false;
    };
    {
        ChildProcess client(QStringLiteral("Uploader"), databaseFolder(), home(), extra);
        QElapsedTimer clock;
        clock.start();
        while (!placing() && clock.elapsed() < 60000)
            QThread::usleep(100);
        client.killHard();
        ASSERT_TRUE(placing());
    }
    expectEveryRevisionWhole(database(), store);

    // Signed in again, the upload goes on and publishes the whole folder.
    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    const VLRTransferList queued = session->uploader()->transfers();
    if (!queued.isEmpty()) {
        ASSERT_TRUE(waitUntil([&] { return queued.first()->isFinished(); }, 60000));
        ASSERT_FALSE(queued.first()->error().has_value());
    }
    expectEveryRevisionWhole(database(), store);
    SqlStatement published(database().handle(), "SELECT count(*) FROM revisions WHERE is_folder = 1");
    ASSERT_TRUE(published.next());
    EXPECT_GE(published.integer(0), 1);
}

TEST_F(CrossProcess, WhatAnotherClientPublishesIsHeardWithinTwoSeconds)
{
    const QString bob = addUser(QStringLiteral("bob@example.com"), QStringLiteral("pw"), QStringLiteral("Bob"));
    WorkspaceStore(database()).addMember(shared, bob, WorkspaceStore::MemberRole);
    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    RecordingDelegate delegate;
    session->setDelegate(&delegate);
    QProcessEnvironment extra;
    extra.insert(QStringLiteral("VELURIA_CHILD_WORKSPACE"), shared);
    ChildProcess client(QStringLiteral("Publisher"), databaseFolder(), home(), extra);
    ASSERT_TRUE(client.waitForLine(QStringLiteral("published"))) << client.output().toStdString();
    EXPECT_TRUE(waitUntil([&] { return !delegate.announcements.isEmpty(); }, 2000));
    session->setDelegate(nullptr);
}

TEST_F(CrossProcess, SignInWaitsForADatabaseLocationThatComesLate)
{
    ChildProcess client(QStringLiteral("LateLocation"), databaseFolder(), home());
    EXPECT_TRUE(client.waitForSuccess()) << client.output().toStdString();
}

TEST(CrashReporting, AFatalSignalLeavesACrashLogBesideTheLog)
{
    QTemporaryDir home;
    ChildProcess client(QStringLiteral("Crasher"), home.path() + QStringLiteral("/db"), home.path());
    EXPECT_FALSE(client.waitForSuccess());
    const QByteArray log =
        ServiceFixture::readFile(home.path() + QStringLiteral("/.local/share/Veluria/Logs/crash.log"));
    EXPECT_TRUE(log.startsWith("Veluria crashed: signal 11\n")) << log.left(200).toStdString();
}

} // namespace
