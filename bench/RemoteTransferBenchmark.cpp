// The library's transfers with a team server: upload and download of a
// 1 GiB file through one veluria-server process over TLS on loopback,
// against cp of the same file on the same disk in the same run. The server
// shares the machine: its TLS, hashing and sync count in the time.

#include "AgainstCp.h"
#include "BenchFiles.h"
#include "TestCluster.h"
#include "sdk/net/RemoteTransfers.h"
#include "sdk/transfers/TransferWorker.h"

#include "service/VLRTransferReporting.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QTemporaryDir>
#include <QThread>

#include <ctime>
#include <mutex>

namespace {

constexpr qint64 bigFileSize = qint64(1) << 30;

struct Server
{
    Server()
    {
        if (!cluster.missing().isEmpty())
            return;
        port = cluster.startServer();
        cluster.addUser(QStringLiteral("bench@example.org"), QStringLiteral("bench password"));
        endpoint.base = QUrl(QStringLiteral("https://localhost:%1").arg(port));
        endpoint.token = cluster.signIn(port, QStringLiteral("bench@example.org"), QStringLiteral("bench password"));
        endpoint.trusted = cluster.tls().caCertificates();
        workspace = cluster
                        .call(port, "POST", QStringLiteral("/v1/workspaces"), endpoint.token,
                              QJsonDocument(QJsonObject{{QStringLiteral("name"), QStringLiteral("Bench")}}).toJson())
                        .json.value(QStringLiteral("id"))
                        .toString();
    }

    TestCluster cluster;
    quint16 port = 0;
    RemoteEndpoint endpoint;
    QString workspace;
    QTemporaryDir home;
};

// The processor time of this process's threads alone: the client's share
// of the work, whatever the server and the rest of the machine do.
double processCpuSeconds()
{
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

// A transfer on a queue's worker, as a session runs it; the seconds it took,
// and the client's processor seconds added to cpu.
double timeJob(const Server& server, const TransferJob& job, TransferResult* result, double* cpu = nullptr)
{
    const double cpuBefore = processCpuSeconds();
    std::mutex mutex;
    bool finished = false;
    TransferWorker worker(RemoteTransfers::runner(server.endpoint, server.home.path()));
    QElapsedTimer clock;
    clock.start();
    worker.start(
        job, [](const TransferWorker::Progress&) {}, [](const TransferJob&) {},
        [&](const TransferResult& end) {
            std::lock_guard lock(mutex);
            *result = end;
            finished = true;
        });
    for (;;) {
        {
            std::lock_guard lock(mutex);
            if (finished)
                break;
        }
        QThread::msleep(2);
    }
    const double seconds = double(clock.nsecsElapsed()) / 1e9;
    if (cpu)
        *cpu += processCpuSeconds() - cpuBefore;
    return seconds;
}

TransferJob uploadJob(const Server& server, const QString& path)
{
    TransferJob job;
    job.id = QStringLiteral("bench");
    job.type = TransferJob::Upload;
    job.filePath = path;
    job.totalSize = bigFileSize;
    job.workspaceId = server.workspace;
    return job;
}

void BM_RemoteUploadOneGiBAgainstCp(benchmark::State& state)
{
    Server server;
    if (!server.cluster.missing().isEmpty())
        return state.SkipWithError(server.cluster.missing().toUtf8().constData());
    const QString source = writeRandomFile(server.home.filePath(QStringLiteral("big.bin")), bigFileSize, 42);
    AgainstCp times(bigFileSize);
    double cpu = 0;
    for (auto _ : state) {
        double cp = 0;
        double cpAndSync = 0;
        timeCp(source, server.home.filePath(QStringLiteral("copy.bin")), &cp, &cpAndSync);
        // Each round a new content, so that the store keeps each one.
        QFile file(source);
        file.open(QIODevice::ReadWrite);
        file.write(QByteArray::number(state.iterations()).leftJustified(16, ' '));
        file.close();
        TransferResult result;
        times.add(state, timeJob(server, uploadJob(server, source), &result, &cpu), cp, cpAndSync);
        if (result.error)
            state.SkipWithError(result.error->localizedDescription.toUtf8().constData());
    }
    times.report(state);
    state.counters["client_cpu_s"] = cpu / double(state.iterations());
}
BENCHMARK(BM_RemoteUploadOneGiBAgainstCp)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3);

void BM_RemoteDownloadOneGiBAgainstCp(benchmark::State& state)
{
    Server server;
    if (!server.cluster.missing().isEmpty())
        return state.SkipWithError(server.cluster.missing().toUtf8().constData());
    const QString source = writeRandomFile(server.home.filePath(QStringLiteral("big.bin")), bigFileSize, 43);
    TransferResult uploaded;
    timeJob(server, uploadJob(server, source), &uploaded);
    if (uploaded.error)
        return state.SkipWithError(uploaded.error->localizedDescription.toUtf8().constData());
    RemoteTransfers::Revision revision{uploaded.revisionId, server.workspace, QStringLiteral("big.bin"), bigFileSize,
                                       QString()};
    AgainstCp times(bigFileSize);
    double cpu = 0;
    for (auto _ : state) {
        double cp = 0;
        double cpAndSync = 0;
        timeCp(source, server.home.filePath(QStringLiteral("copy.bin")), &cp, &cpAndSync);
        const TransferJob job = RemoteTransfers::downloadJob(QStringLiteral("bench"), revision,
                                                             server.home.filePath(QStringLiteral("down")),
                                                             VLRTransferReporting::RequestedDownloadSubType);
        TransferResult result;
        times.add(state, timeJob(server, job, &result, &cpu), cp, cpAndSync);
        if (result.error)
            state.SkipWithError(result.error->localizedDescription.toUtf8().constData());
        QFile::remove(result.filePath);
    }
    times.report(state);
    state.counters["client_cpu_s"] = cpu / double(state.iterations());
}
BENCHMARK(BM_RemoteDownloadOneGiBAgainstCp)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3);

} // namespace
