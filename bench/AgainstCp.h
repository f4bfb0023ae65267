#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <benchmark/benchmark.h>

inline double timeCommand(const QString& program, const QStringList& arguments)
{
    QElapsedTimer clock;
    clock.start();
    QProcess::execute(program, arguments);
    return double(clock.nsecsElapsed()) / 1e9;
}

// cp, and cp followed by a sync of the copy (the library syncs each file
// once, so that a crash never loses what it reported as done).
inline void timeCp(const QString& from, const QString& to, double* cp, double* cpAndSync)
{
    QFile::remove(to);
    *cp = timeCommand(QStringLiteral("cp"), {from, to});
    QFile::remove(to);
    *cpAndSync = timeCommand(QStringLiteral("sh"),
                             {QStringLiteral("-c"), QStringLiteral("cp \"$0\" \"$1\" && sync \"$1\""), from, to});
    QFile::remove(to);
}

// A file's transfers against cp of the same file, times summed over the
// rounds; the counters give the averages and the ratios (cp's time over the
// library's: 1 is as fast as cp).
struct AgainstCp
{
    explicit AgainstCp(qint64 fileSize)
        : size(fileSize)
    { }

    qint64 size;
    double library = 0;
    double cp = 0;
    double cpAndSync = 0;
    int rounds = 0;

    void add(benchmark::State& state, double libraryRound, double cpRound, double cpAndSyncRound)
    {
        state.SetIterationTime(libraryRound);
        library += libraryRound;
        cp += cpRound;
        cpAndSync += cpAndSyncRound;
        ++rounds;
    }
    void report(benchmark::State& state) const
    {
        if (rounds == 0)
            return;
        state.counters["MiB/s"] = double(size) / (1 << 20) * rounds / library;
        state.counters["cp_s"] = cp / rounds;
        state.counters["cp_sync_s"] = cpAndSync / rounds;
        state.counters["ratio_vs_cp"] = cp / library;
        state.counters["ratio_vs_cp_sync"] = cpAndSync / library;
    }
};
