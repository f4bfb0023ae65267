// A 1 GiB upload through the embedded service library while the transfers
// tab shows the uploads list and repaints at every progress step, against the
// same upload with the tab hidden, in one run. The ratio is the hidden
// upload's time over the shown one's: 1 means showing the list costs the
// upload nothing.

#include "BenchFiles.h"
#include "app/VLRTab.h"
#include "fakes/FakeClientServices.h"
#include "pages/RecordingPages.h"
#include "sdk/accounts/AccountStore.h"
#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/local/EmbeddedServiceLibrary.h"
#include "sdk/local/LocalUserSession.h"
#include "sdk/workspaces/WorkspaceStore.h"
#include "service/VLRLogHandler.h"
#include "service/VLRTransferQueue.h"
#include "service/VLRUtils.h"
#include "session/MainViewController.h"
#include "transfers/TransfersViewController.h"
#include "widgets/StatusItemImageView.h"
#include "widgets/VLRFonts.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <benchmark/benchmark.h>

#include <ctime>
#include <fcntl.h>

namespace {

constexpr qint64 BigFileSize = qint64(1) << 30;

bool waitUntil(const std::function<bool()>& condition)
{
    for (int waited = 0; waited < 600000; ++waited) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        if (condition())
            return true;
        QThread::usleep(200);
    }
    return false;
}

void writeBigFile(const QString& path)
{
    writeRandomFile(path, BigFileSize, 7);
}

// The client's main controller on the embedded library, signed in, with the
// real transfers tab and recording stand-ins for the other pages.
struct Client
{
    Client()
    {
        vlr::setLogFilePath(QString());
        qputenv("HOME", home.path().toLocal8Bit());
        VLRFonts::loadMuli();
        const QString folder = data.path() + QStringLiteral("/Veluria");
        library.utils().setDatabaseLocation(QUrl::fromLocalFile(folder));
        database = Database::open(folder, nullptr);
        const QString userId = AccountStore(*database).add(QStringLiteral("bench@example.com"), QStringLiteral("Bench"),
                                                           QString(), QStringLiteral("pw"), false, nullptr);
        workspaceId = WorkspaceStore(*database).create(QStringLiteral("Bench"), userId, Clock::nowMs());

        ClientServices services = fakes.services();
        services.library = &library;
        MainViewControllerParts taken = parts.take();
        auto transfers = std::make_unique<TransfersViewController>(services);
        page = transfers.get();
        taken.transfersViewController = std::move(transfers);
        application.statusView = &statusView;
        controller = std::make_unique<MainViewController>(std::move(taken), &application, services);
        controller->loadView();

        bool answered = false;
        library.createUserSessionWithLoginCredentials(
            VLRLoginCredentials(QStringLiteral("bench@example.com"), QStringLiteral("pw")),
            QStringLiteral("lumenra-courier-token"), true,
            [&](const VLRUserSessionPtr& s, const VLRLoginVerifierPtr&, const vlr::OptionalError&) {
                session = std::dynamic_pointer_cast<LocalUserSession>(s);
                answered = true;
            });
        waitUntil([&] { return answered; });
        controller->didLoginWithSession(session, false);
        waitUntil([&] { return !session->syncingLists(); });
    }

    ~Client()
    {
        controller.reset();
        if (session)
            session->logoutWithCompletionHandler(nullptr);
        library.init().shutdown();
    }

    // Seconds from the call to the finished upload.
    double upload(const QString& path, int round)
    {
        // A new content each round, so that nothing is deduplicated away.
        QFile file(path);
        file.open(QIODevice::ReadWrite);
        file.write(QByteArray::number(round).leftJustified(16, ' '));
        file.close();
        QElapsedTimer clock;
        clock.start();
        session->uploadAndPublishNewRevision(QUrl::fromLocalFile(path), workspaceId, false, QString(), nullptr);
        const VLRTransferReportingPtr transfer = session->uploader()->transfers().last();
        waitUntil([&] { return transfer->isFinished(); });
        return double(clock.nsecsElapsed()) / 1e9;
    }

    QTemporaryDir data;
    QTemporaryDir home;
    QTemporaryDir settings;
    EmbeddedServiceLibrary library;
    std::unique_ptr<Database> database;
    QString workspaceId;
    FakeClientServices fakes{settings.path()};
    PageJournal journal;
    RecordingParts parts{&journal};
    RecordingApplication application{&journal};
    StatusItemImageView statusView{QRect(0, 0, 24, 24), true};
    TransfersViewController* page = nullptr;
    std::unique_ptr<MainViewController> controller;
    std::shared_ptr<LocalUserSession> session;
};

double mainThreadSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

// Counts the frames the uploads list paints.
struct PaintCounter : QObject
{
    qint64 paints = 0;
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

void BM_UploadOneGiBWithUploadsListShownAndHidden(benchmark::State& state)
{
    Client client;
    const QString source = client.home.path() + QStringLiteral("/big.bin");
    writeBigFile(source);
    PaintCounter counter;
    // The popover's content on the transfers tab, uploads list.
    client.controller->tabView()->setCurrentIndex(VLRTab::Transfers);
    client.page->showTab(TransfersPage::UploadsList, QString());
    client.page->uploadsTableView()->viewport()->installEventFilter(&counter);
    // Wall time and the main thread's processor time, shown and hidden.
    double shown = 0, hidden = 0, shownCpu = 0, hiddenCpu = 0;
    int round = 0;
    const auto measure = [&](bool show) {
        client.controller->view()->setVisible(show);
        const double cpu = mainThreadSeconds();
        const double seconds = client.upload(source, ++round);
        (show ? shown : hidden) += seconds;
        (show ? shownCpu : hiddenCpu) += mainThreadSeconds() - cpu;
        return seconds;
    };
    for (auto _ : state) {
        // Turn about which goes first, so that neither always meets a cold disk.
        const bool showFirst = round % 4 == 0;
        const double first = measure(showFirst);
        const double second = measure(!showFirst);
        state.SetIterationTime(first + second);
    }
    const double n = double(state.iterations());
    state.counters["shown_s"] = shown / n;
    state.counters["hidden_s"] = hidden / n;
    state.counters["ratio_hidden_over_shown"] = hidden / shown;
    state.counters["main_cpu_shown_s"] = shownCpu / n;
    state.counters["main_cpu_hidden_s"] = hiddenCpu / n;
    state.counters["frames_shown"] = double(counter.paints) / n;
}
BENCHMARK(BM_UploadOneGiBWithUploadsListShownAndHidden)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(4);

} // namespace
