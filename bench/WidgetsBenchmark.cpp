// What the status item's clock costs at rest and while busy, how often the
// picture handed to the tray really changes, and what a badge's new value
// costs a titled button.

#include "widgets/StatusItemImageView.h"
#include "widgets/VLRBadgeView.h"
#include "widgets/VLRButton.h"

#include <QMetaMethod>
#include <QSet>

#include <benchmark/benchmark.h>

namespace {

constexpr int kTicks = 10000;

// Runs the view's clock by hand, through the same slot the timer calls.
class StatusItemClock
{
public:
    explicit StatusItemClock(StatusItemImageView* view)
        : m_view(view)
        , m_tick(view->metaObject()->method(view->metaObject()->indexOfSlot("animationTimer()")))
    { }

    void tick() { m_tick.invoke(m_view, Qt::DirectConnection); }

private:
    StatusItemImageView* m_view;
    QMetaMethod m_tick;
};

// viewState for tick i: busy (3), idle (2), or idle and busy by turns every
// 1,000 ticks (0 here).
qint64 stateForTick(qint64 pattern, int tick)
{
    if (pattern != 0)
        return pattern;
    return (tick / 1000) % 2 == 0 ? 3 : 2;
}

void BM_StatusItemTicks(benchmark::State& state)
{
    StatusItemImageView view(QRect(0, 0, 24, 24), true);
    StatusItemClock clock(&view);
    // Every picture the view may show, as loaded at its start.
    QSet<qint64> loaded = {view.greyedOutImage().cacheKey(), view.solidImage().cacheKey()};
    for (const QPixmap& frame : view.animationImages())
        loaded.insert(frame.cacheKey());

    qint64 changes = 0;
    qint64 foreign = 0;
    QObject::connect(&view, &VLRImageView::imageChanged, [&](const QPixmap& image) {
        ++changes;
        if (!loaded.contains(image.cacheKey()))
            ++foreign;
    });
    const qint64 pattern = state.range(0);
    qint64 firstBatchChanges = -1;
    for (auto _ : state) {
        for (int i = 0; i < kTicks; ++i) {
            view.setViewState(stateForTick(pattern, i));
            clock.tick();
        }
        if (firstBatchChanges < 0)
            firstBatchChanges = changes;
    }
    const double batches = double(state.iterations());
    // From a fresh view: the first tick always brings a picture on.
    state.counters["picture_changes_in_first_10k_ticks"] = double(firstBatchChanges);
    state.counters["pictures_not_loaded_at_start"] = double(foreign);
    state.counters["ticks"] = benchmark::Counter(double(kTicks) * batches, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_StatusItemTicks)->Arg(2)->ArgName("idle")->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_StatusItemTicks)->Arg(3)->ArgName("busy")->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_StatusItemTicks)->Arg(0)->ArgName("alternating")->Unit(benchmark::kMicrosecond);

// 9 and 10 by turns: the bubble widens and narrows, so title and badge are
// placed anew each time.
void BM_ButtonBadgeValueChange(benchmark::State& state)
{
    VLRButton button(QRect(0, 0, 120, 32));
    if (state.range(0) != 0)
        button.setTitle(QStringLiteral("Uploads"));
    qint64 value = 9;
    for (auto _ : state) {
        value = value == 9 ? 10 : 9;
        button.setBadgeValue(value);
    }
    benchmark::DoNotOptimize(button.badgeView()->frame());
}
BENCHMARK(BM_ButtonBadgeValueChange)->Arg(1)->ArgName("titled");
BENCHMARK(BM_ButtonBadgeValueChange)->Arg(0)->ArgName("untitled");

} // namespace
