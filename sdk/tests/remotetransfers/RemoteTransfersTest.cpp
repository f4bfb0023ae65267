#include "TestCluster.h"

#include "sdk/base/ServiceError.h"
#include "sdk/net/HttpStream.h"
#include "sdk/net/RemoteEndpoint.h"
#include "sdk/net/RemoteTransfers.h"
#include "sdk/store/Sha256.h"
#include "sdk/transfers/DownloadLink.h"
#include "sdk/transfers/DownloadRun.h"
#include "sdk/transfers/TransferWorker.h"

#include "service/VLRTransferReporting.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

#include <mutex>

namespace {

constexpr qint64 bigSize = 100 * 1000 * 1000;

QByteArray json(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray sha256Of(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    Sha256 sha;
    QByteArray block(4 * 1024 * 1024, Qt::Uninitialized);
    for (qint64 got; (got = file.read(block.data(), block.size())) > 0;)
        sha.add(block.constData(), got);
    return sha.hexDigest();
}

void writeRandomFile(const QString& path, qint64 size)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    QByteArray block(1024 * 1024, Qt::Uninitialized);
    for (qint64 left = size; left > 0; left -= block.size()) {
        QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(block.data()), block.size() / 4);
        file.write(block.constData(), std::min<qint64>(left, block.size()));
    }
}

std::string said(const vlr::OptionalError& error)
{
    return error ? error->localizedDescription.toStdString() : std::string();
}

QStringList filesUnder(const QString& folder)
{
    QStringList found;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        found.append(QDir(folder).relativeFilePath(it.next()));
    return found;
}

// One run of a job on a queue's worker with the remote runner, as a session
// would start it; stopWhen, asked at each progress report, stops it there.
struct RunOutcome
{
    TransferResult result;
    TransferJob noted;
    qint64 firstReportedDone = -1;
};

RunOutcome runJob(const RemoteEndpoint& endpoint, const QString& databaseFolder, const TransferJob& job,
                  const std::function<bool(qint64 done)>& stopWhen = {})
{
    std::mutex mutex;
    RunOutcome run;
    run.noted = job;
    bool finished = false;
    TransferWorker worker(RemoteTransfers::runner(endpoint, databaseFolder));
    worker.start(
        job,
        [&](const TransferWorker::Progress& progress) {
            std::lock_guard lock(mutex);
            if (run.firstReportedDone < 0)
                run.firstReportedDone = progress.done;
            if (stopWhen && stopWhen(progress.done))
                worker.stopCurrent();
        },
        [&](const TransferJob& noted) {
            std::lock_guard lock(mutex);
            run.noted = noted;
        },
        [&](const TransferResult& result) {
            std::lock_guard lock(mutex);
            run.result = result;
            finished = true;
        });
    TestCluster::waitFor(
        [&] {
            std::lock_guard lock(mutex);
            return finished;
        },
        240000);
    worker.shutdown();
    EXPECT_TRUE(finished);
    return run;
}

class RemoteTransfersTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        cluster = new TestCluster;
        if (!cluster->missing().isEmpty())
            return;
        port = cluster->startServer();
        cluster->addUser(QStringLiteral("ann@example.org"), QStringLiteral("ann's password"));
        cluster->addUser(QStringLiteral("ben@example.org"), QStringLiteral("ben's password"));
        cluster->addUser(QStringLiteral("cy@example.org"), QStringLiteral("cy's password"));
        ann = endpointFor(QStringLiteral("ann@example.org"), QStringLiteral("ann's password"));
        ben = endpointFor(QStringLiteral("ben@example.org"), QStringLiteral("ben's password"));
        cy = endpointFor(QStringLiteral("cy@example.org"), QStringLiteral("cy's password"));
        workspace = cluster->call(port, "POST", QStringLiteral("/v1/workspaces"), ann.token, json({{"name", "Team"}}))
                        .json.value("id")
                        .toString();
        cluster->call(port, "POST", QStringLiteral("/v1/workspaces/%1/members").arg(workspace), ann.token,
                      json({{"email", "ben@example.org"}}));
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

    static RemoteEndpoint endpointFor(const QString& email, const QString& password)
    {
        RemoteEndpoint endpoint;
        endpoint.base = QUrl(QStringLiteral("https://localhost:%1").arg(port));
        endpoint.token = cluster->signIn(port, email, password);
        endpoint.trusted = cluster->tls().caCertificates();
        return endpoint;
    }

    // The same server's address with its port closed.
    static RemoteEndpoint nowhere()
    {
        QTcpServer closed;
        closed.listen(QHostAddress::LocalHost);
        RemoteEndpoint endpoint = ann;
        endpoint.base.setPort(closed.serverPort());
        return endpoint;
    }

    static TransferJob uploadJob(const QString& path)
    {
        TransferJob job;
        job.id = QStringLiteral("upload-1");
        job.type = TransferJob::Upload;
        job.filePath = path;
        job.totalSize = QFileInfo(path).size();
        job.workspaceId = workspace;
        job.text = QStringLiteral("Here it is");
        return job;
    }

    // What a link to the revision turns into for the endpoint's user.
    static std::pair<std::optional<TransferJob>, vlr::OptionalError>
    resolve(const RemoteEndpoint& endpoint, const QString& revisionId, const QString& folder)
    {
        QNetworkAccessManager network;
        std::optional<std::pair<std::optional<TransferJob>, vlr::OptionalError>> answer;
        RemoteTransfers::resolveDownloadLink(
            network, endpoint, DownloadLink::make(workspace, revisionId), QStringLiteral("user"),
            VLRTransferReporting::RequestedDownloadSubType, [folder](const QString&) { return folder; },
            [&](const std::optional<TransferJob>& job, const vlr::OptionalError& error) {
                answer = {job, error};
            });
        EXPECT_TRUE(TestCluster::waitFor([&] { return answer.has_value(); }));
        return answer.value_or(std::pair<std::optional<TransferJob>, vlr::OptionalError>{});
    }

    QTemporaryDir home;

    static inline TestCluster* cluster = nullptr;
    static inline quint16 port = 0;
    static inline RemoteEndpoint ann;
    static inline RemoteEndpoint ben;
    static inline RemoteEndpoint cy;
    static inline QString workspace;
};

TEST_F(RemoteTransfersTest, UploadStoppedHalfwayResumesFromTheServersOffsetAndDownloadResumesByRange)
{
    const QString source = home.filePath(QStringLiteral("big.bin"));
    writeRandomFile(source, bigSize);
    const QByteArray digest = sha256Of(source);

    // Stopped halfway: the upload's id is noted for a later run, and the
    // server kept what it got.
    const RunOutcome first =
        runJob(ann, home.path(), uploadJob(source), [](qint64 done) { return done >= bigSize / 2; });
    ASSERT_EQ(first.result.outcome, TransferResult::Outcome::Stopped);
    ASSERT_FALSE(first.noted.uploadId.isEmpty());
    const auto offset = cluster->call(port, "HEAD", QStringLiteral("/v1/uploads/") + first.noted.uploadId, ann.token);
    const qint64 kept = offset.header("Upload-Offset").toLongLong();
    EXPECT_GT(kept, 0);
    EXPECT_LT(kept, bigSize);

    // A server out of reach fails the run and keeps the upload for a retry.
    const RunOutcome unreachable = runJob(nowhere(), home.path(), first.noted);
    ASSERT_EQ(unreachable.result.outcome, TransferResult::Outcome::Failed);
    EXPECT_EQ(unreachable.result.error->code, ServiceError::ServerUnreachable);
    EXPECT_EQ(unreachable.noted.uploadId, first.noted.uploadId);

    // Another worker, as after a restart of the client, goes on from there.
    const RunOutcome second = runJob(ann, home.path(), first.noted);
    ASSERT_EQ(second.result.outcome, TransferResult::Outcome::Completed) << said(second.result.error);
    EXPECT_GE(second.firstReportedDone, kept);
    const auto revision =
        cluster->call(port, "GET", QStringLiteral("/v1/revisions/") + second.result.revisionId, ben.token).json;
    EXPECT_EQ(revision.value("sha256").toString().toLatin1(), digest);
    EXPECT_EQ(revision.value("size").toInteger(), bigSize);
    EXPECT_EQ(revision.value("fileName").toString(), QStringLiteral("big.bin"));
    // Done again, as when the last answer was lost, it learns the same
    // revision instead of making a second one.
    const RunOutcome repeated = runJob(ann, home.path(), first.noted);
    ASSERT_EQ(repeated.result.outcome, TransferResult::Outcome::Completed) << said(repeated.result.error);
    EXPECT_EQ(repeated.result.revisionId, second.result.revisionId);

    // Ben's download, stopped halfway, leaves its partial beside the target.
    const QString folder = home.filePath(QStringLiteral("ben"));
    const auto [job, error] = resolve(ben, second.result.revisionId, folder);
    ASSERT_TRUE(job) << said(error);
    EXPECT_EQ(job->filePath, folder + QStringLiteral("/big.bin"));
    EXPECT_EQ(job->totalSize, bigSize);
    const QString partial = DownloadRun::partialPathFor(job->filePath);
    const RunOutcome stopped = runJob(ben, home.path(), *job, [](qint64 done) { return done >= bigSize / 2; });
    ASSERT_EQ(stopped.result.outcome, TransferResult::Outcome::Stopped);
    const qint64 have = QFileInfo(partial).size();
    ASSERT_GT(have, 0);
    ASSERT_LT(have, bigSize);
    EXPECT_EQ(runJob(nowhere(), home.path(), *job).result.error->code, ServiceError::ServerUnreachable);
    EXPECT_EQ(QFileInfo(partial).size(), have);

    // A resume asks only for the rest: a byte spoilt in the part it has is
    // not fetched again, so the check at the end fails and the partial goes.
    {
        QFile spoil(partial);
        ASSERT_TRUE(spoil.open(QIODevice::ReadWrite));
        spoil.seek(10);
        const char byte = spoil.peek(1).at(0);
        spoil.write(QByteArray(1, char(byte ^ 0x5a)));
    }
    const RunOutcome spoilt = runJob(ben, home.path(), *job);
    ASSERT_EQ(spoilt.result.outcome, TransferResult::Outcome::Failed);
    EXPECT_EQ(spoilt.result.error->localizedDescription, QStringLiteral("The stored copy of \"big.bin\" is damaged."));
    EXPECT_FALSE(QFileInfo::exists(partial));
    EXPECT_FALSE(QFileInfo::exists(job->filePath));

    // Stopped and resumed without harm, it ends as the uploaded file.
    runJob(ben, home.path(), *job, [](qint64 done) { return done >= bigSize / 3; });
    const RunOutcome resumed = runJob(ben, home.path(), *job);
    ASSERT_EQ(resumed.result.outcome, TransferResult::Outcome::Completed) << said(resumed.result.error);
    EXPECT_EQ(resumed.result.filePath, job->filePath);
    EXPECT_EQ(sha256Of(job->filePath), digest);
    EXPECT_FALSE(QFileInfo::exists(partial));
    EXPECT_EQ(QFileInfo(job->filePath).permissions() & (QFile::ReadOther | QFile::ReadGroup), 0);
}

TEST_F(RemoteTransfersTest, HostileNamesFromAnotherMemberLandInsideTheFolder)
{
    // Ben's client is not ours: his uploads name the file, and the files in
    // a folder, as it likes.
    const auto uploadAsBen = [](const QString& fileName, const QByteArray& content, bool folder) {
        const auto created = cluster->call(port, "POST", QStringLiteral("/v1/uploads"), ben.token,
                                           json({{"workspace", workspace},
                                                 {"fileName", fileName},
                                                 {"size", content.size()},
                                                 {"sha256", QString::fromLatin1(Sha256::of(content))},
                                                 {"folder", folder}}));
        return cluster
            ->call(port, "PATCH", QStringLiteral("/v1/uploads/") + created.json.value("id").toString(), ben.token,
                   content, {{"Upload-Offset", "0"}})
            .json.value("revision")
            .toString();
    };
    const QString folder = home.filePath(QStringLiteral("downloads/Team"));
    const auto [job, error] = resolve(ann, uploadAsBen(QStringLiteral("../../.bashrc"), "rm -rf ~\n", false), folder);
    ASSERT_TRUE(job) << said(error);
    const RunOutcome run = runJob(ann, home.path(), *job);
    ASSERT_EQ(run.result.outcome, TransferResult::Outcome::Completed) << said(run.result.error);
    EXPECT_EQ(QFileInfo(run.result.filePath).absolutePath(), folder);
    EXPECT_EQ(filesUnder(home.filePath(QStringLiteral("downloads"))).size(), 1);
    EXPECT_FALSE(QFileInfo::exists(home.filePath(QStringLiteral(".bashrc"))));

    // A folder whose stream names a file outside it is refused whole.
    const QString maker = home.filePath(QStringLiteral("maker/inner"));
    ASSERT_TRUE(QDir().mkpath(maker));
    QFile(home.filePath(QStringLiteral("maker/escape.txt"))).open(QIODevice::WriteOnly);
    QProcess tar;
    tar.setWorkingDirectory(maker);
    tar.start(QStringLiteral("tar"), {QStringLiteral("-cPf"), QStringLiteral("-"), QStringLiteral("../escape.txt")});
    ASSERT_TRUE(tar.waitForFinished());
    const auto [folderJob, folderError] =
        resolve(ann, uploadAsBen(QStringLiteral("Shots"), tar.readAll(), true), folder);
    ASSERT_TRUE(folderJob) << said(folderError);
    const RunOutcome refused = runJob(ann, home.path(), *folderJob);
    ASSERT_EQ(refused.result.outcome, TransferResult::Outcome::Failed);
    EXPECT_EQ(refused.result.error->code, ServiceError::ContentDamaged);
    EXPECT_EQ(filesUnder(home.filePath(QStringLiteral("downloads"))).size(), 1);
}

// A folder goes up as one stream, resumed after a stop, and comes down to
// another member as the same files; links and the like stay behind.
TEST_F(RemoteTransfersTest, AFolderGoesUpResumedAndComesDownAsTheSameFiles)
{
    const QString source = home.filePath(QStringLiteral("Shoot"));
    ASSERT_TRUE(QDir().mkpath(source + QStringLiteral("/raw/day 1")));
    writeRandomFile(source + QStringLiteral("/raw/day 1/café.raw"), bigSize / 2);
    writeRandomFile(source + QStringLiteral("/.notes"), 1000);
    QFile(source + QStringLiteral("/empty")).open(QIODevice::WriteOnly);
    QFile::link(source + QStringLiteral("/.notes"), source + QStringLiteral("/link"));
    const QStringList files{QStringLiteral(".notes"), QStringLiteral("empty"), QStringLiteral("raw/day 1/café.raw")};

    const RunOutcome stopped =
        runJob(ann, home.path(), uploadJob(source), [](qint64 done) { return done >= bigSize / 4; });
    ASSERT_EQ(stopped.result.outcome, TransferResult::Outcome::Stopped);
    const RunOutcome uploaded = runJob(ann, home.path(), stopped.noted);
    ASSERT_EQ(uploaded.result.outcome, TransferResult::Outcome::Completed) << said(uploaded.result.error);
    EXPECT_GT(uploaded.firstReportedDone, 0) << "the second run goes on from the server's offset";
    const auto revision =
        cluster->call(port, "GET", QStringLiteral("/v1/revisions/") + uploaded.result.revisionId, ben.token).json;
    EXPECT_TRUE(revision.value("folder").toBool());
    EXPECT_EQ(revision.value("fileName").toString(), QStringLiteral("Shoot"));

    const QString folder = home.filePath(QStringLiteral("ben"));
    const auto [job, error] = resolve(ben, uploaded.result.revisionId, folder);
    ASSERT_TRUE(job) << said(error);
    runJob(ben, home.path(), *job, [](qint64 done) { return done >= bigSize / 4; });
    const RunOutcome downloaded = runJob(ben, home.path(), *job);
    ASSERT_EQ(downloaded.result.outcome, TransferResult::Outcome::Completed) << said(downloaded.result.error);
    const QString copy = downloaded.result.filePath;
    EXPECT_EQ(copy, folder + QStringLiteral("/Shoot"));
    QStringList got = filesUnder(copy);
    got.sort();
    EXPECT_EQ(got, files);
    for (const QString& file : files)
        EXPECT_EQ(sha256Of(copy + QLatin1Char('/') + file), sha256Of(source + QLatin1Char('/') + file))
            << file.toStdString();
    EXPECT_EQ(filesUnder(folder),
              QStringList(files).replaceInStrings(QRegularExpression(QStringLiteral("^")), QStringLiteral("Shoot/")))
        << "nothing but the folder is left beside it";

    // An empty folder is a folder too.
    const QString empty = home.filePath(QStringLiteral("Nothing yet"));
    ASSERT_TRUE(QDir().mkpath(empty));
    const RunOutcome emptyUp = runJob(ann, home.path(), uploadJob(empty));
    ASSERT_EQ(emptyUp.result.outcome, TransferResult::Outcome::Completed) << said(emptyUp.result.error);
    const auto [emptyJob, emptyError] = resolve(ben, emptyUp.result.revisionId, folder);
    ASSERT_TRUE(emptyJob) << said(emptyError);
    const RunOutcome emptyDown = runJob(ben, home.path(), *emptyJob);
    ASSERT_EQ(emptyDown.result.outcome, TransferResult::Outcome::Completed) << said(emptyDown.result.error);
    EXPECT_TRUE(QFileInfo(folder + QStringLiteral("/Nothing yet")).isDir());
}

TEST_F(RemoteTransfersTest, OutsidersAndOtherTokensGetAClearErrorAndNothingIsWritten)
{
    const QString source = home.filePath(QStringLiteral("note.txt"));
    QFile file(source);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("a note for the team");
    file.close();
    const RunOutcome uploaded = runJob(ann, home.path(), uploadJob(source));
    ASSERT_EQ(uploaded.result.outcome, TransferResult::Outcome::Completed);

    // Cy is in no workspace of Ann's: the link names nothing for him.
    const QString folder = home.filePath(QStringLiteral("cy"));
    const auto [none, refusal] = resolve(cy, uploaded.result.revisionId, folder);
    EXPECT_FALSE(none);
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->code, ServiceError::RevisionNotFound);

    // A job with his token fails at the server and writes nothing; nor can
    // he upload into Ann's workspace.
    const auto [job, error] = resolve(ann, uploaded.result.revisionId, folder);
    ASSERT_TRUE(job);
    const RunOutcome download = runJob(cy, home.path(), *job);
    ASSERT_EQ(download.result.outcome, TransferResult::Outcome::Failed);
    EXPECT_EQ(download.result.error->localizedDescription,
              QStringLiteral("There is no such revision in your workspaces."));
    EXPECT_FALSE(QFileInfo::exists(folder));
    const RunOutcome upload = runJob(cy, home.path(), uploadJob(source));
    ASSERT_EQ(upload.result.outcome, TransferResult::Outcome::Failed);
    EXPECT_EQ(upload.result.error->localizedDescription,
              QStringLiteral("There is no such workspace, or you are not a member of it."));

    // A token the server never issued is told as such.
    RemoteEndpoint forged = ann;
    forged.token = "not-a-token";
    const RunOutcome forgedRun = runJob(forged, home.path(), *job);
    ASSERT_EQ(forgedRun.result.outcome, TransferResult::Outcome::Failed);
    EXPECT_EQ(forgedRun.result.error->code, 5);
    EXPECT_FALSE(QFileInfo::exists(folder));
}

TEST_F(RemoteTransfersTest, ContentStreamStopsSendingWhenTheServerAnswersEarlyAndRefusesAnUntrustedServer)
{
    const QByteArray content(1024, 'x');
    const auto created = cluster->call(port, "POST", QStringLiteral("/v1/uploads"), ann.token,
                                       json({{"workspace", workspace},
                                             {"fileName", "early.bin"},
                                             {"size", 64 * 1024 * 1024},
                                             {"sha256", QString::fromLatin1(Sha256::of(content))}}));
    ASSERT_EQ(created.status, 201);

    // An offset the server doesn't have: it answers before the body, and
    // the rest of the body is not pushed after that answer.
    HttpStream early(
        ann, [] { return false; }, 30000);
    ASSERT_TRUE(early.begin("PATCH", QStringLiteral("uploads/") + created.json.value("id").toString(),
                            {{"Upload-Offset", "4096"}}, 64 * 1024 * 1024));
    const QByteArray block(HttpStream::lowWater, '\0');
    int written = 0;
    while (written < 16 && early.write(block.constData(), block.size()))
        ++written;
    EXPECT_LT(written, 16);
    EXPECT_TRUE(early.answered());
    ASSERT_TRUE(early.readHead());
    EXPECT_EQ(early.status(), 409);
    EXPECT_EQ(early.header("upload-offset"), "0");
    EXPECT_EQ(early.failure().code, 409);

    // Without the server's certificate trusted, nothing is sent.
    RemoteEndpoint untrusted = ann;
    untrusted.trusted.clear();
    HttpStream refused(
        untrusted, [] { return false; }, 30000);
    EXPECT_FALSE(refused.begin("GET", QStringLiteral("user"), {}, -1));
    EXPECT_EQ(refused.state(), HttpStream::State::Failed);
    EXPECT_EQ(refused.failure().code, ServiceError::ServerUnreachable);
}

} // namespace
