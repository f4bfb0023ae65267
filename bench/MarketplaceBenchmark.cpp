// What a catalogue of 2,000 installers costs the marketplace page: delivered
// whole in one turn of the event loop (the four groups and the installers),
// and delivered again with one installer changed. Each must cost one rebuild;
// the counters say how many rebuilds ran and how many row views were built.

#include "app/VLRUserDefaultsKeys.h"
#include "fakes/FakeClientServices.h"
#include "fakes/FakeInstaller.h"
#include "fakes/FakeRevision.h"
#include "marketplace/MarketplaceViewController.h"
#include "marketplace/MarketplaceViewControllerDelegate.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

constexpr int kInstallers = 2000;

struct Owner : MarketplaceViewControllerDelegate
{
    qint64 reports = 0;
    void marketplaceViewControllerDidChangeUpdateCountTo(MarketplacePage*, qint64, bool) override { ++reports; }
    bool marketplaceViewControllerLoading() override { return false; }
};

std::shared_ptr<FakeInstaller> installer(int i)
{
    auto revision = std::make_shared<FakeRevision>();
    revision->setVersionDisplay(QStringLiteral("1.%1").arg(i));
    auto made = FakeInstaller::make(QStringLiteral("installer-%1").arg(i), QStringLiteral("Tool %1").arg(i));
    made->setCurrentRevision(revision);
    return made;
}

// A quarter each: new, updates, not installed, installed.
struct Catalogue
{
    VLRInstallerList all, fresh, updates, notInstalled;

    Catalogue()
    {
        for (int i = 0; i < kInstallers; ++i) {
            auto one = installer(i);
            all.append(one);
            if (i % 4 == 0)
                fresh.append(one);
            else if (i % 4 == 1)
                updates.append(one);
            else if (i % 4 == 2)
                notInstalled.append(one);
        }
    }

    void deliverTo(MarketplaceViewController& page) const
    {
        page.updateNotInstalled(notInstalled);
        page.updateNewInstallers(fresh);
        page.updateInstallerUpdates(updates);
        page.updateInstallers(all);
    }
};

struct Bench
{
    QTemporaryDir settings;
    FakeClientServices fakes{settings.path()};
    Owner owner;
    std::unique_ptr<MarketplaceViewController> page;

    Bench()
    {
        fakes.defaults->setBool(true, VLRUserDefaultsKeyShowNotifications);
        page = std::make_unique<MarketplaceViewController>(fakes.services());
        page->setDelegate(&owner);
        page->view()->resize(360, 472);
        page->view()->show();
        page->showUpdatesTab();
    }

    qint64 builtRows() const
    {
        qint64 built = 0;
        for (const auto& entry : page->installerViewControllers())
            built += entry->isViewLoaded() ? 1 : 0;
        return built;
    }
};

void BM_CatalogueDeliveredInOneTurn(benchmark::State& state)
{
    const Catalogue catalogue;
    qint64 rebuilds = 0;
    qint64 built = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto bench = std::make_unique<Bench>();
        state.ResumeTiming();
        // Twice, as after a session is bound: the groups come before the rows
        // that they look up, and again once the rows exist.
        catalogue.deliverTo(*bench->page);
        catalogue.deliverTo(*bench->page);
        QCoreApplication::sendPostedEvents();
        state.PauseTiming();
        rebuilds += bench->owner.reports;
        built += bench->builtRows();
        bench.reset();
        state.ResumeTiming();
    }
    state.counters["rebuilds"] = benchmark::Counter(double(rebuilds), benchmark::Counter::kAvgIterations);
    state.counters["row_views_built"] = benchmark::Counter(double(built), benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_CatalogueDeliveredInOneTurn)->Unit(benchmark::kMillisecond);

void BM_CatalogueRedeliveredWithOneChanged(benchmark::State& state)
{
    Catalogue catalogue;
    Bench bench;
    catalogue.deliverTo(*bench.page);
    catalogue.deliverTo(*bench.page);
    QCoreApplication::sendPostedEvents();
    const qint64 before = bench.owner.reports;
    int changed = 0;
    for (auto _ : state) {
        // One update changes its record, as a new revision would.
        const int index = 1 + 4 * (changed++ % (kInstallers / 4));
        auto fresh = installer(index);
        catalogue.all[index] = fresh;
        catalogue.updates[index / 4] = fresh;
        bench.page->updateInstallerUpdates(catalogue.updates);
        bench.page->updateInstallers(catalogue.all);
        QCoreApplication::sendPostedEvents();
    }
    state.counters["rebuilds"] =
        benchmark::Counter(double(bench.owner.reports - before), benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_CatalogueRedeliveredWithOneChanged)->Unit(benchmark::kMillisecond);

} // namespace
