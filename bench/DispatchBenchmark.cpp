// How much one observed change costs the main controller, and what binding
// and unbinding a session costs.

#include "fakes/FakeClientServices.h"
#include "fakes/FakeTransfer.h"
#include "fakes/FakeUserSession.h"
#include "pages/RecordingPages.h"
#include "service/VLRLogFormat.h"
#include "service/VLRLogHandler.h"
#include "session/MainViewController.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

// A transfers page that only keeps the list it is handed, as a cached list
// would before deciding what changed.
class ListKeepingTransfersPage : public RecordingTransfersPage
{
public:
    using RecordingTransfersPage::RecordingTransfersPage;
    void setUploads(const VLRTransferList& list) override { uploads = list; }
};

struct Fixture
{
    Fixture()
    {
        vlr::setLogFilePath(QString());
        MainViewControllerParts parts;
        parts.transfersViewController = std::make_unique<ListKeepingTransfersPage>(&journal);
        controller = std::make_unique<MainViewController>(std::move(parts), nullptr, fakes.services());
        controller->loadView();
    }

    QTemporaryDir settings;
    FakeClientServices fakes{settings.path()};
    PageJournal journal;
    std::unique_ptr<MainViewController> controller;
};

// A session like the library's: no journal of its observers.
std::shared_ptr<FakeUserSession> quietSession()
{
    auto session = FakeUserSession::make();
    session->journal = nullptr;
    session->fakeUploader()->journal = nullptr;
    session->fakeDownloader()->journal = nullptr;
    session->fakeUpdater()->journal = nullptr;
    return session;
}

void BM_CurrentUploadProgressWithQueuedUploads(benchmark::State& state)
{
    Fixture fixture;
    auto session = quietSession();
    VLRTransferList uploads;
    for (int i = 0; i < state.range(0); ++i)
        uploads.append(FakeTransfer::make(QString::number(i), 1, QStringLiteral("/tmp/file-%1.psd").arg(i)));
    session->fakeUploader()->setTransfers(uploads);
    auto current = std::static_pointer_cast<FakeTransfer>(uploads.first());
    session->fakeUploader()->setCurrentTransfer(current);
    fixture.controller->didLoginWithSession(session, false);

    double fraction = 0;
    for (auto _ : state) {
        fraction += 1e-6;
        current->setFractionCompleted(fraction);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_CurrentUploadProgressWithQueuedUploads)->Arg(1000);

void BM_BindAndUnbindASession(benchmark::State& state)
{
    Fixture fixture;
    auto session = quietSession();
    session->fakeUploader()->setTransfers({FakeTransfer::make("u", 1, "/tmp/u")});
    for (auto _ : state) {
        fixture.controller->sessionDidChange(session);
        fixture.controller->sessionDidChange(nullptr);
        session->cacheSizeHandlers.clear();
    }
}
BENCHMARK(BM_BindAndUnbindASession);

} // namespace
