// The workspaces page handed 10,000 workspaces with members and pictures:
// how long the GUI thread stands still for the first list and for the same
// list again, and what the page keeps in memory for it.

#include "fakes/FakeClientServices.h"
#include "fakes/FakeWorkspace.h"
#include "fakes/FakeWorkspaceUser.h"
#include "workspaces/WorkspacesViewController.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <ctime>
#include <malloc.h>

namespace {

constexpr int kWorkspaces = 10000;
constexpr int kPeople = 60;

// The heap in use, in megabytes.
double heapMegabytes()
{
    return double(mallinfo2().uordblks) / 1e6;
}

// As the library gives them: every record its own member objects, the
// pictures of one person decoded once and shared.
VLRWorkspaceList makeWorkspaces()
{
    QList<QImage> portraits;
    for (int person = 0; person < kPeople; ++person) {
        QImage portrait(96, 96, QImage::Format_ARGB32);
        portrait.fill(QColor::fromHsv(person * 6, 160, 200));
        portraits.append(portrait);
    }
    VLRWorkspaceList workspaces;
    const QDateTime now = QDateTime::currentDateTime();
    for (int i = 0; i < kWorkspaces; ++i) {
        auto workspace = FakeWorkspace::make(QString::number(i), QStringLiteral("Workspace %1").arg(i),
                                             now.addSecs(-qint64(i) * 600));
        VLRWorkspaceUserList users;
        for (int m = 0; m < 2 + i % 7; ++m) {
            const int person = (i + m * 7) % kPeople;
            auto user = FakeWorkspaceUser::make(QStringLiteral("P%1").arg(person), QStringLiteral("Lee"), m == 0);
            user->setAvatar(portraits[person]);
            users.append(user);
        }
        workspace->setWorkspaceUsers(users);
        workspaces.append(workspace);
    }
    return workspaces;
}

// The GUI thread's own processor time, which a loaded machine doesn't
// stretch as it does the wall clock.
double threadMilliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

struct Stall
{
    double wall = 0;
    double cpu = 0;
};

// One delivery as the main controller makes it, with the painting that follows.
Stall deliver(WorkspacesViewController& page, const VLRWorkspaceList& workspaces)
{
    QElapsedTimer timer;
    timer.start();
    const double cpu = threadMilliseconds();
    page.updateWorkspaces(workspaces);
    QApplication::processEvents();
    return {double(timer.nsecsElapsed()) / 1e6, threadMilliseconds() - cpu};
}

void BM_WorkspacesDelivery(benchmark::State& state)
{
    QTemporaryDir folder;
    FakeClientServices fakes(folder.path());
    const double before = heapMegabytes();
    const VLRWorkspaceList workspaces = makeWorkspaces();
    const double records = heapMegabytes();
    Stall first;
    Stall again;
    double page = 0;
    double kept = 0;
    for (auto _ : state) {
        WorkspacesViewController controller(fakes.services());
        controller.view()->resize(360, 472);
        controller.view()->show();
        QApplication::processEvents();
        const double shown = heapMegabytes();
        first = deliver(controller, workspaces);
        page = heapMegabytes() - shown;
        again = deliver(controller, workspaces);
        kept = heapMegabytes() - shown;
    }
    state.counters["first_wall_ms"] = first.wall;
    state.counters["first_cpu_ms"] = first.cpu;
    state.counters["again_wall_ms"] = again.wall;
    state.counters["again_cpu_ms"] = again.cpu;
    state.counters["records_MB"] = records - before;
    state.counters["page_MB"] = page;
    state.counters["page_after_again_MB"] = kept;
}
BENCHMARK(BM_WorkspacesDelivery)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
