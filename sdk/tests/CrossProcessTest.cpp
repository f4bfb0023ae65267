#include "ChildProcess.h"
#include "ServiceFixture.h"

#include "sdk/store/ContentStore.h"
#include "sdk/store/Sha256.h"
#include "sdk/transfers/DownloadLink.h"
#include "sdk/transfers/LocalTransfer.h"

#include "service/VLRTransferQueue.h"
#include "service/VLRTransferReporting.h"

#include <QDirIterator>
#include <QFileInfo>

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

    const auto& job = std::static_pointer_cast<LocalTransfer>(resumed)->job();
    VLRTransferReportingPtr down;
    session->downloadUrl(DownloadLink::make(job.workspaceId, job.revisionId),
                         [&](const VLRTransferReportingPtr& transfer, const vlr::OptionalError&) { down = transfer; });
    ASSERT_TRUE(waitUntil([&] { return down && down->isFinished(); }, 120000));
    EXPECT_TRUE(readFile(home() + QStringLiteral("/Veluria/Shared/huge.bin")) == content);
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
