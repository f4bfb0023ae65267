// The signed-in client at rest: the embedded service library with a session
// whose lists are loaded, and the status item's view ticking in its idle
// state, left alone for ten seconds. It counts how often the process's
// threads woke (their context switches) and the processor time they took;
// the goal is the view's eight ticks a second and no more than 0.1 % of a
// core. A change that another process makes to the database while it rests
// is heard within two seconds.

#include "sdk/accounts/AccountStore.h"
#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/local/EmbeddedServiceLibrary.h"
#include "sdk/local/LocalUserSession.h"
#include "sdk/workspaces/WorkspaceStore.h"

#include "service/VLRLogHandler.h"
#include "service/VLRUtils.h"
#include "widgets/StatusItemImageView.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <ctime>

namespace {

// Voluntary and forced context switches of all the process's threads.
double contextSwitches()
{
    double total = 0;
    const QStringList tasks = QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& task : tasks) {
        QFile status(QStringLiteral("/proc/self/task/%1/status").arg(task));
        if (!status.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray& line : status.readAll().split('\n'))
            if (line.contains("ctxt_switches:"))
                total += line.mid(line.indexOf(':') + 1).trimmed().toDouble();
    }
    return total;
}

double processCpuSeconds()
{
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

void runFor(int milliseconds, const std::function<bool()>& until = {})
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    QTimer check;
    if (until) {
        QObject::connect(&check, &QTimer::timeout, &loop, [&] {
            if (until())
                loop.quit();
        });
        check.start(10);
    }
    loop.exec();
}

void BM_SignedInAtRest(benchmark::State& state)
{
    QTemporaryDir data;
    QTemporaryDir home;
    vlr::setLogFilePath(QString());
    qputenv("HOME", home.path().toLocal8Bit());
    const QString folder = data.path() + QStringLiteral("/Veluria");
    EmbeddedServiceLibrary library;
    library.utils().setDatabaseLocation(QUrl::fromLocalFile(folder));
    auto database = Database::open(folder, nullptr);
    const QString userId = AccountStore(*database).add(QStringLiteral("rest@example.com"), QStringLiteral("Rest"),
                                                       QString(), QStringLiteral("pw"), false, nullptr);
    WorkspaceStore(*database).create(QStringLiteral("Rest"), userId, Clock::nowMs());

    std::shared_ptr<LocalUserSession> session;
    library.createUserSessionWithLoginCredentials(
        VLRLoginCredentials(QStringLiteral("rest@example.com"), QStringLiteral("pw")),
        QStringLiteral("lumenra-courier-token"), true,
        [&](const VLRUserSessionPtr& s, const VLRLoginVerifierPtr&, const vlr::OptionalError&) {
            session = std::dynamic_pointer_cast<LocalUserSession>(s);
        });
    runFor(10000, [&] { return session && !session->syncingLists(); });
    StatusItemImageView view(QRect(0, 0, 24, 24), true);
    view.setViewState(2);
    runFor(1000);

    std::vector<double> wakeups;
    std::vector<double> cpuPercent;
    std::vector<double> heard;
    for (auto _ : state) {
        const double switches = contextSwitches();
        const double cpu = processCpuSeconds();
        QElapsedTimer clock;
        clock.start();
        runFor(10000);
        const double seconds = double(clock.nsecsElapsed()) / 1e9;
        state.SetIterationTime(seconds);
        wakeups.push_back((contextSwitches() - switches) / seconds);
        cpuPercent.push_back((processCpuSeconds() - cpu) / seconds * 100);

        // A new workspace for the user, made through a connection of its
        // own, as veluria-admin would.
        const qsizetype before = session->workspaces().size();
        clock.restart();
        WorkspaceStore(*database).create(QStringLiteral("New"), userId, Clock::nowMs());
        runFor(5000, [&] { return session->workspaces().size() > before; });
        heard.push_back(double(clock.nsecsElapsed()) / 1e9);
    }
    state.counters["wakeups_per_s_median"] = median(wakeups);
    state.counters["cpu_percent_of_a_core_median"] = median(cpuPercent);
    state.counters["change_heard_s_median"] = median(heard);
    session->logoutWithCompletionHandler(nullptr);
    library.init().shutdown();
}
BENCHMARK(BM_SignedInAtRest)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3);

} // namespace
