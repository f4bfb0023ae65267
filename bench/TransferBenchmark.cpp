// The service library against the disk: uploads and downloads of a 1 GiB
// file compared with cp of the same file on the same disk in the same run
// (the ratio is cp's time over the library's: 1 is as fast as cp), the
// latency of a sign-in, and a session with 10,000 workspaces and 10,000
// completed transfers loading its lists.

#include "AgainstCp.h"
#include "BenchFiles.h"
#include "sdk/accounts/AccountStore.h"
#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/local/EmbeddedServiceLibrary.h"
#include "sdk/local/LocalUserSession.h"
#include "sdk/transfers/DownloadLink.h"
#include "sdk/transfers/QueuedTransfer.h"
#include "sdk/transfers/TransferStore.h"
#include "sdk/workspaces/WorkspaceStore.h"

#include "service/VLRLogFormat.h"
#include "service/VLRLogHandler.h"
#include "service/VLRTransferQueue.h"
#include "service/VLRUtils.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <benchmark/benchmark.h>

#include <ctime>
#include <fcntl.h>
#include <random>

namespace {

constexpr qint64 bigFileSize = qint64(1) << 30;

bool waitUntil(const std::function<bool()>& condition)
{
    for (int waited = 0; waited < 600000; waited += 1) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        if (condition())
            return true;
        QThread::usleep(200);
    }
    return false;
}

// Waits as the client's event loop does, asleep until the library posts
// something, so that the waiting takes no processor from the library.
void sleepUntil(const std::function<bool()>& condition)
{
    while (!condition())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

// A local service in temporary folders with one account and workspace.
struct Service
{
    Service()
    {
        vlr::setLogFilePath(QString());
        qputenv("HOME", home.path().toLocal8Bit());
        library.utils().setDatabaseLocation(QUrl::fromLocalFile(folder()));
        database = Database::open(folder(), nullptr);
        userId = AccountStore(*database).add(QStringLiteral("bench@example.com"), QStringLiteral("Bench"), QString(),
                                             QStringLiteral("pw"), false, nullptr);
        workspaceId = WorkspaceStore(*database).create(QStringLiteral("Bench"), userId, Clock::nowMs());
    }
    ~Service() { library.init().shutdown(); }

    QString folder() const { return data.path() + QStringLiteral("/Veluria"); }

    EmbeddedServiceLibrary library;

    // The time from the call to the session in the handler.
    std::shared_ptr<LocalUserSession> signIn(double* seconds = nullptr)
    {
        std::shared_ptr<LocalUserSession> session;
        bool answered = false;
        QElapsedTimer clock;
        clock.start();
        library.createUserSessionWithLoginCredentials(
            VLRLoginCredentials(QStringLiteral("bench@example.com"), QStringLiteral("pw")),
            QStringLiteral("lumenra-courier-token"), true,
            [&](const VLRUserSessionPtr& s, const VLRLoginVerifierPtr&, const vlr::OptionalError&) {
                session = std::dynamic_pointer_cast<LocalUserSession>(s);
                answered = true;
            });
        waitUntil([&] { return answered; });
        if (seconds)
            *seconds = double(clock.nsecsElapsed()) / 1e9;
        return session;
    }

    QTemporaryDir data;
    QTemporaryDir home;
    std::unique_ptr<Database> database;
    QString userId;
    QString workspaceId;
};

QString makeBigFile(const QString& path)
{
    return writeRandomFile(path, bigFileSize, 42);
}

void BM_UploadOneGiBAgainstCp(benchmark::State& state)
{
    Service service;
    const QString source = makeBigFile(service.home.path() + QStringLiteral("/big.bin"));
    const auto session = service.signIn();
    waitUntil([&] { return !session->syncingLists(); });
    AgainstCp times(bigFileSize);
    for (auto _ : state) {
        double cp = 0;
        double cpAndSync = 0;
        timeCp(source, service.home.path() + QStringLiteral("/copy.bin"), &cp, &cpAndSync);
        // Each round a new content, so that nothing is deduplicated away.
        QFile file(source);
        file.open(QIODevice::ReadWrite);
        file.write(QByteArray::number(state.iterations()).leftJustified(16, ' '));
        file.close();
        QElapsedTimer clock;
        clock.start();
        session->uploadAndPublishNewRevision(QUrl::fromLocalFile(source), service.workspaceId, false, QString(),
                                             nullptr);
        const VLRTransferReportingPtr transfer = session->uploader()->transfers().last();
        waitUntil([&] { return transfer->isFinished(); });
        times.add(state, double(clock.nsecsElapsed()) / 1e9, cp, cpAndSync);
        if (transfer->error())
            state.SkipWithError(transfer->error()->localizedDescription.toUtf8().constData());
    }
    times.report(state);
    session->logoutWithCompletionHandler(nullptr);
}
BENCHMARK(BM_UploadOneGiBAgainstCp)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3);

void BM_DownloadOneGiBAgainstCp(benchmark::State& state)
{
    Service service;
    const QString source = makeBigFile(service.home.path() + QStringLiteral("/big.bin"));
    const auto session = service.signIn();
    waitUntil([&] { return !session->syncingLists(); });
    session->uploadAndPublishNewRevision(QUrl::fromLocalFile(source), service.workspaceId, false, QString(), nullptr);
    const auto upload = std::static_pointer_cast<QueuedTransfer>(session->uploader()->transfers().last());
    waitUntil([&] { return upload->isFinished(); });
    const QString link = DownloadLink::make(service.workspaceId, upload->job().revisionId);
    AgainstCp times(bigFileSize);
    for (auto _ : state) {
        double cp = 0;
        double cpAndSync = 0;
        timeCp(source, service.home.path() + QStringLiteral("/copy.bin"), &cp, &cpAndSync);
        VLRTransferReportingPtr transfer;
        QElapsedTimer clock;
        clock.start();
        session->downloadUrl(link, QUrl::fromLocalFile(service.home.path() + QStringLiteral("/Downloads")),
                             [&](const VLRTransferReportingPtr& t, const vlr::OptionalError&) { transfer = t; });
        waitUntil([&] { return transfer && transfer->isFinished(); });
        times.add(state, double(clock.nsecsElapsed()) / 1e9, cp, cpAndSync);
        if (transfer->error())
            state.SkipWithError(transfer->error()->localizedDescription.toUtf8().constData());
        QFile::remove(transfer->fileURL().toLocalFile());
    }
    times.report(state);
    session->logoutWithCompletionHandler(nullptr);
}
BENCHMARK(BM_DownloadOneGiBAgainstCp)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3);

// The processor time of all the process's threads: on a busy machine a
// better measure of the work than the wall clock.
double processCpuSeconds()
{
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

// A folder of small files, each round with new contents, against cp -r of
// the same folder followed by one sync of its file system.
void makeFolder(const QString& path, int files, int round)
{
    QDir().mkpath(path);
    std::mt19937_64 random(quint64(round) * 1000003 + quint64(files));
    std::vector<quint64> block(4096 / sizeof(quint64));
    for (int i = 0; i < files; ++i) {
        for (quint64& word : block)
            word = random();
        QFile file(QStringLiteral("%1/part %2.dat").arg(path).arg(i, 5, 10, QLatin1Char('0')));
        file.open(QIODevice::WriteOnly);
        file.write(reinterpret_cast<const char*>(block.data()), qint64(block.size() * sizeof(quint64)));
    }
    ::sync();
}

void BM_PublishFolderAgainstCp(benchmark::State& state)
{
    const int files = int(state.range(0));
    Service service;
    const auto session = service.signIn();
    waitUntil([&] { return !session->syncingLists(); });
    std::vector<double> library;
    std::vector<double> cpAndSync;
    std::vector<double> ratios;
    int rounds = 0;
    for (auto _ : state) {
        const QString folder = service.home.path() + QStringLiteral("/round%1").arg(rounds);
        const QString copy = service.home.path() + QStringLiteral("/copy%1").arg(rounds);
        makeFolder(folder, files, rounds);
        const double cpRound =
            timeCommand(QStringLiteral("sh"),
                        {QStringLiteral("-c"), QStringLiteral("cp -r \"$0\" \"$1\" && sync -f \"$1\""), folder, copy});
        QDir(copy).removeRecursively();
        makeFolder(folder + QStringLiteral("-2"), files, rounds + 1000);
        QElapsedTimer clock;
        clock.start();
        session->uploadAndPublishNewRevision(QUrl::fromLocalFile(folder + QStringLiteral("-2")), service.workspaceId,
                                             false, QString(), nullptr);
        const VLRTransferReportingPtr transfer = session->uploader()->transfers().last();
        sleepUntil([&] { return transfer->isFinished(); });
        const double libraryRound = double(clock.nsecsElapsed()) / 1e9;
        if (transfer->error())
            state.SkipWithError(transfer->error()->localizedDescription.toUtf8().constData());
        state.SetIterationTime(libraryRound);
        library.push_back(libraryRound);
        cpAndSync.push_back(cpRound);
        ratios.push_back(libraryRound / cpRound);
        ++rounds;
    }
    state.counters["median_s"] = median(library);
    state.counters["cp_sync_median_s"] = median(cpAndSync);
    state.counters["times_cp_sync_median"] = median(ratios);
    state.counters["us_per_file"] = median(library) / files * 1e6;
    session->logoutWithCompletionHandler(nullptr);
}
BENCHMARK(BM_PublishFolderAgainstCp)
    ->Arg(1000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(5);

void BM_SignIn(benchmark::State& state)
{
    Service service;
    for (auto _ : state) {
        double seconds = 0;
        const auto session = service.signIn(&seconds);
        state.SetIterationTime(seconds);
        session->logoutWithCompletionHandler(nullptr);
    }
}
BENCHMARK(BM_SignIn)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(10);

// From the sign-in's answer to the lists in place, for an account with as
// many workspaces as completed transfers: the time per item should not grow
// with their number.
void BM_LoadWorkspacesAndTransfers(benchmark::State& state)
{
    const int items = int(state.range(0));
    Service service;
    service.database->transaction([&] {
        WorkspaceStore workspaces(*service.database);
        TransferStore transfers(*service.database);
        const qint64 now = Clock::nowMs();
        for (int i = 0; i < items; ++i) {
            workspaces.create(QStringLiteral("Workspace %1").arg(i), service.userId, now - qint64(i) * 60000);
            TransferJob job;
            job.id = Clock::newIdentifier();
            job.userId = service.userId;
            job.type = i % 2 ? TransferJob::Upload : TransferJob::Download;
            job.subType = 1;
            job.finished = true;
            job.filePath = QStringLiteral("/home/someone/file %1.psd").arg(i);
            job.totalSize = 1000 + i;
            job.workspaceId = service.workspaceId;
            job.createdAt = now;
            job.finishedAt = now + i;
            transfers.save(job);
        }
        return true;
    });
    std::vector<double> times;
    std::vector<double> cpuTimes;
    for (auto _ : state) {
        double signIn = 0;
        const auto session = service.signIn(&signIn);
        QElapsedTimer clock;
        clock.start();
        const double cpuBefore = processCpuSeconds();
        waitUntil([&] { return !session->syncingLists(); });
        cpuTimes.push_back(processCpuSeconds() - cpuBefore);
        times.push_back(double(clock.nsecsElapsed()) / 1e9);
        state.SetIterationTime(times.back());
        if (session->workspaces().size() != items + 1 || session->completedTransfers().size() != items)
            state.SkipWithError("the lists are not whole");
        session->logoutWithCompletionHandler(nullptr);
    }
    state.counters["us_per_item_median"] = median(times) / (2.0 * items) * 1e6;
    state.counters["cpu_us_per_item_median"] = median(cpuTimes) / (2.0 * items) * 1e6;
}
BENCHMARK(BM_LoadWorkspacesAndTransfers)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(40000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(5);

} // namespace
