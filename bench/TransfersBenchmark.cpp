// What the transfers tab costs while a transfer runs among 1,000 listed: a
// list update with every row known, and the page redrawn after each update.

#include "fakes/FakeClientServices.h"
#include "fakes/FakeTransfer.h"
#include "transfers/TransferRow.h"
#include "transfers/TransfersViewController.h"
#include "widgets/VLRFonts.h"

#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QSet>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>

namespace {

const QSize PageSize(360, 472);

VLRTransferList manyUploads(int count)
{
    VLRTransferList list;
    for (int i = 0; i < count; ++i) {
        auto transfer = FakeTransfer::make(QStringLiteral("upload-%1").arg(i), VLRTransferReporting::UploadType,
                                           QStringLiteral("/home/ada/Veluria/asset_%1.blend").arg(i));
        transfer->setTotalSize(1000000 + i * 7919);
        list.append(transfer);
    }
    return list;
}

QSet<TransferRow*> rowsOf(const TransfersViewController& page)
{
    QSet<TransferRow*> rows;
    for (const auto& row : page.uploadsRows())
        rows.insert(row.get());
    return rows;
}

struct Page
{
    Page()
    {
        VLRFonts::loadMuli();
        page.view()->resize(PageSize);
        page.view()->show();
    }
    QTemporaryDir folder;
    FakeClientServices fakes{folder.path()};
    TransfersViewController page{fakes.services()};
};

// setUploads: with the given number of transfers, every one already known.
void BM_SetUploadsWarmCache(benchmark::State& state)
{
    Page fixture;
    const VLRTransferList uploads = manyUploads(int(state.range(0)));
    fixture.page.setUploads(uploads);
    const QSet<TransferRow*> known = rowsOf(fixture.page);
    auto* current = static_cast<FakeTransfer*>(uploads.first().get());
    double fraction = 0;
    for (auto _ : state) {
        current->setFractionCompleted(fraction += 0.0001);
        fixture.page.setUploads(uploads);
    }
    state.counters["rows_made"] = double((rowsOf(fixture.page) - known).size());
}
BENCHMARK(BM_SetUploadsWarmCache)->Arg(1000)->Unit(benchmark::kMicrosecond);

// One progress step of the current upload: the list update the dispatcher
// makes, then the page painted as the screen would show it.
void BM_PaintPerUpdate(benchmark::State& state)
{
    Page fixture;
    const VLRTransferList uploads = manyUploads(int(state.range(0)));
    fixture.page.setUploads(uploads);
    QImage frame(PageSize, QImage::Format_ARGB32_Premultiplied);
    auto* current = static_cast<FakeTransfer*>(uploads.first().get());
    double fraction = 0;
    const auto update = [&] {
        current->setFractionCompleted(fraction += 0.0005);
        fixture.page.setUploads(uploads);
        QPainter painter(&frame);
        fixture.page.view()->render(&painter);
    };
    // The first frame renders the pictures the later ones reuse.
    update();
    // The slowest frame by the clock and by this thread's own processor time:
    // on a loaded machine the first also counts time spent waiting.
    qint64 slowest = 0;
    double slowestCpu = 0;
    QElapsedTimer timer;
    for (auto _ : state) {
        timer.start();
        const std::clock_t cpu = std::clock();
        update();
        slowestCpu = std::max(slowestCpu, double(std::clock() - cpu) / CLOCKS_PER_SEC);
        slowest = std::max(slowest, timer.nsecsElapsed());
    }
    state.counters["slowest_ms"] = double(slowest) / 1e6;
    state.counters["slowest_cpu_ms"] = slowestCpu * 1e3;
}
BENCHMARK(BM_PaintPerUpdate)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace
