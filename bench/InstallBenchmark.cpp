// The install step of the marketplace against tar: a 200 MB gzip-compressed
// archive of 60 files unpacked into the applications folder (with its swap
// and desktop entry) and by `tar -xf` into a folder on the same disk, in the
// same run. The ratio is tar's time over the install's: 1 is as fast as tar.

#include "sdk/installs/Applications.h"
#include "sdk/installs/Installation.h"
#include "sdk/installs/PackageBuilder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstring>
#include <random>

namespace {

constexpr int fileCount = 60;
constexpr qint64 fileSize = 4 * 1024 * 1024;

// Half random, half text-like: an application's mix of compressed and
// plain files.
QByteArray content(int index)
{
    QByteArray bytes(fileSize, Qt::Uninitialized);
    std::mt19937_64 random(index);
    if (index % 2 == 0) {
        for (qint64 i = 0; i + 8 <= fileSize; i += 8) {
            const quint64 value = random();
            std::memcpy(bytes.data() + i, &value, 8);
        }
    } else {
        for (qint64 i = 0; i < fileSize; ++i)
            bytes[i] = char('a' + (random() % 26));
    }
    return bytes;
}

} // namespace

static void BM_InstallArchiveAgainstTar(benchmark::State& state)
{
    QTemporaryDir root(QDir::currentPath() + QStringLiteral("/install-bench-XXXXXX"));
    qputenv("XDG_DATA_HOME", (root.path() + QStringLiteral("/share")).toLocal8Bit());
    const QString archive = root.path() + QStringLiteral("/app.tar.gz");
    QList<PackageBuilder::Entry> entries{{QStringLiteral("bin/app"), "#!/bin/sh\n", 0755}};
    for (int i = 0; i < fileCount; ++i)
        entries.append({QStringLiteral("data/file-%1").arg(i), content(i)});
    QString failure;
    if (!PackageBuilder::write(archive, entries, &failure)) {
        state.SkipWithError(qPrintable(failure));
        return;
    }
    double install = 0;
    double tar = 0;
    for (auto _ : state) {
        QElapsedTimer clock;
        clock.start();
        Installation installation(
            {QStringLiteral("bench"),
             QStringLiteral("App"),
             QStringLiteral("1"),
             archive,
             QStringLiteral("app.tar.gz"),
             {}},
            [] { return false; }, [](double) {});
        if (!installation.run()) {
            state.SkipWithError(qPrintable(installation.failure()));
            return;
        }
        const double round = double(clock.nsecsElapsed()) / 1e9;
        install += round;
        state.SetIterationTime(round);

        const QString target = root.path() + QStringLiteral("/tar");
        QDir(target).removeRecursively();
        QDir().mkpath(target);
        clock.restart();
        QProcess::execute(QStringLiteral("tar"), {QStringLiteral("-xf"), archive, QStringLiteral("-C"), target});
        tar += double(clock.nsecsElapsed()) / 1e9;
    }
    state.counters["install_s"] = install / double(state.iterations());
    state.counters["tar_s"] = tar / double(state.iterations());
    state.counters["ratio_vs_tar"] = tar / install;
    state.counters["archive_MB"] = double(QFileInfo(archive).size()) / 1e6;
}
BENCHMARK(BM_InstallArchiveAgainstTar)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3);
