#include "ServiceFixture.h"

#include "sdk/base/PrivateFiles.h"
#include "sdk/base/ServiceError.h"
#include "sdk/store/Sha256.h"
#include "sdk/transfers/DownloadLink.h"
#include "sdk/transfers/DownloadRun.h"
#include "sdk/transfers/QueuedTransfer.h"
#include "sdk/transfers/TransferStore.h"

#include "service/VLRTransferQueue.h"
#include "service/VLRTransferReporting.h"
#include "service/VLRWorkspace.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFileInfo>

#include <sys/stat.h>

namespace {

class Transfers : public ServiceFixture
{
protected:
    void SetUp() override
    {
        ServiceFixture::SetUp();
        ann = addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"), QStringLiteral("Ann"));
        shared = addWorkspace(QStringLiteral("Shared"), ann);
        source = home() + QStringLiteral("/source");
        QDir().mkpath(source);
    }

    VLRTransferReportingPtr upload(const std::shared_ptr<LocalUserSession>& session, const QString& path,
                                   const QString& text = QStringLiteral("Here it is"))
    {
        vlr::OptionalError error;
        const qsizetype before = session->uploader()->transfers().size() + session->completedTransfers().size();
        session->uploadAndPublishNewRevision(QUrl::fromLocalFile(path), shared, false, text, &error);
        EXPECT_FALSE(error.has_value()) << (error ? error->localizedDescription.toStdString() : "");
        const VLRTransferList all = session->uploader()->transfers() + session->completedTransfers();
        EXPECT_EQ(all.size(), before + 1);
        for (const VLRTransferReportingPtr& transfer : all)
            if (transfer->fileURL().toLocalFile() == path && !known.contains(transfer))
                return known.append(transfer), transfer;
        return nullptr;
    }

    struct Requested
    {
        VLRTransferReportingPtr transfer;
        vlr::OptionalError error;
    };
    Requested download(const std::shared_ptr<LocalUserSession>& session, const QString& link, const QUrl& folder = {})
    {
        auto answer = std::make_shared<Requested>();
        auto calls = std::make_shared<int>(0);
        auto handler = [answer, calls](const VLRTransferReportingPtr& transfer, const vlr::OptionalError& error) {
            answer->transfer = transfer;
            answer->error = error;
            ++*calls;
        };
        if (folder.isEmpty())
            session->downloadUrl(link, handler);
        else
            session->downloadUrl(link, folder, handler);
        EXPECT_TRUE(waitUntil([&] { return *calls > 0; }));
        QCoreApplication::processEvents();
        EXPECT_EQ(*calls, 1);
        return *answer;
    }

    static QString linkOf(const VLRTransferReportingPtr& upload)
    {
        const auto& job = std::static_pointer_cast<QueuedTransfer>(upload)->job();
        return DownloadLink::make(job.workspaceId, job.revisionId);
    }

    static bool finished(const VLRTransferReportingPtr& transfer) { return transfer && transfer->isFinished(); }

    QString ann;
    QString shared;
    QString source;
    VLRTransferList known;
};

TEST_F(Transfers, UploadAndDownloadRoundTripByteForByteOnTheGuiThread)
{
    // What the library writes is private whatever the umask allows.
    const std::shared_ptr<void> openUmask(nullptr, [previous = ::umask(0)](void*) { ::umask(previous); });
    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    ChangeRecorder recorder;
    const QStringList queueKeys{QStringLiteral("transfers"), QStringLiteral("currentTransfer"),
                                QStringLiteral("throughput"), QStringLiteral("timeRemaining"),
                                QStringLiteral("timeRemainingInvalid")};
    recorder.watch(*session->uploader(), queueKeys);
    recorder.watch(*session->downloader(), queueKeys);
    recorder.watch(*session, {QStringLiteral("completedTransfers")});

    const QByteArray content = randomBytes(24 * 1024 * 1024 + 123);
    const QString path = writeFile(source + QStringLiteral("/Poster final.psd"), content);
    QElapsedTimer clock;
    clock.start();
    const VLRTransferReportingPtr up = upload(session, path);
    ASSERT_NE(up, nullptr);
    recorder.watch(*up, {QStringLiteral("fractionCompleted"), QStringLiteral("finished"), QStringLiteral("error")});
    EXPECT_EQ(up->totalSize(), content.size());
    EXPECT_EQ(session->uploader()->currentTransfer(), up);
    ASSERT_TRUE(waitUntil([&] { return finished(up); }));
    const qint64 elapsed = clock.elapsed();
    EXPECT_FALSE(up->error().has_value()) << up->error()->localizedDescription.toStdString();
    EXPECT_EQ(up->fractionCompleted(), 1.0);
    EXPECT_EQ(session->uploader()->currentTransfer(), nullptr);
    EXPECT_EQ(session->completedTransfers(), VLRTransferList{up});
    // At most one progress step every 50 ms, and one for the end.
    EXPECT_LE(recorder.count(QStringLiteral("fractionCompleted"), up.get()), elapsed / 50 + 2);
    EXPECT_EQ(recorder.count(QStringLiteral("finished"), up.get()), 1);

    // The content is in the store, whole and private.
    const QDir store(databaseFolder() + QStringLiteral("/Store"));
    EXPECT_EQ(modeOf(store.path()), 0700u);
    QDirIterator blobs(store.path(), QDir::Files, QDirIterator::Subdirectories);
    QStringList found;
    while (blobs.hasNext())
        found.append(blobs.next());
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(readFile(found.at(0)), content);
    EXPECT_EQ(modeOf(found.at(0)), 0600u);

    const Requested requested = download(session, linkOf(up));
    ASSERT_NE(requested.transfer, nullptr);
    EXPECT_FALSE(requested.error.has_value());
    const VLRTransferReportingPtr down = requested.transfer;
    recorder.watch(*down, {QStringLiteral("fractionCompleted"), QStringLiteral("finished")});
    EXPECT_EQ(down->subType(), 1);
    ASSERT_TRUE(waitUntil([&] { return finished(down); }));
    EXPECT_FALSE(down->error().has_value());
    const QString target = home() + QStringLiteral("/Veluria/Shared/Poster final.psd");
    EXPECT_EQ(down->fileURL(), QUrl::fromLocalFile(target));
    EXPECT_EQ(readFile(target), content);
    EXPECT_EQ(modeOf(target), 0600u);
    EXPECT_EQ(session->completedTransfers(), (VLRTransferList{up, down}));

    // Into a folder of the user's choosing; a file of that name that the
    // user has there is kept.
    const QString chosen = home() + QStringLiteral("/Chosen");
    QDir().mkpath(chosen);
    const mode_t chosenMode = modeOf(chosen);
    writeFile(chosen + QStringLiteral("/Poster final.psd"), "the user's own");
    const Requested elsewhere = download(session, linkOf(up), QUrl::fromLocalFile(chosen));
    ASSERT_NE(elsewhere.transfer, nullptr);
    ASSERT_TRUE(waitUntil([&] { return finished(elsewhere.transfer); }));
    EXPECT_EQ(readFile(chosen + QStringLiteral("/Poster final.psd")), QByteArray("the user's own"));
    EXPECT_EQ(readFile(chosen + QStringLiteral("/Poster final (2).psd")), content);
    EXPECT_EQ(elsewhere.transfer->fileURL(), QUrl::fromLocalFile(chosen + QStringLiteral("/Poster final (2).psd")));
    EXPECT_EQ(modeOf(chosen), chosenMode);

    // A folder comes down whole, hidden and empty files too, and leaves no
    // partial folder behind.
    const QString folder = source + QStringLiteral("/Site");
    QDir().mkpath(folder + QStringLiteral("/img/icons"));
    const QMap<QString, QByteArray> files{{QStringLiteral("index.html"), "<html></html>"},
                                          {QStringLiteral("img/logo.png"), randomBytes(300000)},
                                          {QStringLiteral("img/icons/.hidden"), "h"},
                                          {QStringLiteral("empty.txt"), QByteArray("")}};
    for (auto it = files.begin(); it != files.end(); ++it)
        writeFile(folder + QLatin1Char('/') + it.key(), it.value());
    const VLRTransferReportingPtr site = upload(session, folder);
    ASSERT_TRUE(waitUntil([&] { return finished(site); }));
    EXPECT_EQ(site->totalSize(), 13 + 300000 + 1);
    const Requested siteDown = download(session, linkOf(site));
    ASSERT_TRUE(waitUntil([&] { return finished(siteDown.transfer); }));
    ASSERT_FALSE(siteDown.transfer->error().has_value());
    for (auto it = files.begin(); it != files.end(); ++it)
        EXPECT_EQ(readFile(home() + QStringLiteral("/Veluria/Shared/Site/") + it.key()), it.value())
            << it.key().toStdString();
    EXPECT_FALSE(QFileInfo::exists(home() + QStringLiteral("/Veluria/Shared/.Site.veluria-part")));
    for (const QString& root : {home() + QStringLiteral("/Veluria"), databaseFolder()}) {
        QDirIterator written(root, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
        while (written.hasNext()) {
            const QFileInfo entry(written.next());
            EXPECT_EQ(modeOf(entry.filePath()), entry.isDir() ? 0700u : 0600u) << entry.filePath().toStdString();
        }
    }

    EXPECT_TRUE(recorder.allOnGuiThread());
}

TEST_F(Transfers, PauseReorderCancelAndRestartInTheQueue)
{
    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    ChangeRecorder recorder;
    recorder.watch(*session, {QStringLiteral("transfersPaused")});
    session->pauseAllTransfers(true);
    EXPECT_TRUE(session->transfersPaused());
    const VLRTransferReportingPtr a = upload(session, writeFile(source + QStringLiteral("/a.txt"), "aaa"));
    const VLRTransferReportingPtr b = upload(session, writeFile(source + QStringLiteral("/b.txt"), "bbb"));
    const VLRTransferReportingPtr c = upload(session, writeFile(source + QStringLiteral("/c.txt"), "ccc"));
    QCoreApplication::processEvents();
    EXPECT_EQ(session->uploader()->currentTransfer(), nullptr);
    EXPECT_EQ(session->uploader()->transfers(), (VLRTransferList{a, b, c}));

    session->uploader()->moveTransfersAbove({c, b}, a);
    EXPECT_EQ(session->uploader()->transfers(), (VLRTransferList{c, b, a}));
    session->uploader()->moveTransfersAbove({c}, nullptr);
    EXPECT_EQ(session->uploader()->transfers(), (VLRTransferList{b, a, c}));

    c->pause();
    b->cancel();
    ASSERT_TRUE(b->isFinished() && b->error().has_value());
    EXPECT_EQ(b->error()->domain, QStringLiteral("NSCocoaErrorDomain"));
    EXPECT_EQ(b->error()->code, 3072);
    EXPECT_EQ(session->completedTransfers(), VLRTransferList{b});

    // A restart refuses what isn't failed, and takes back what is.
    vlr::OptionalError refused;
    session->uploader()->restartTransfer(a, &refused);
    ASSERT_TRUE(refused.has_value());
    EXPECT_EQ(refused->localizedDescription, QStringLiteral("This transfer can't be retried."));
    vlr::OptionalError wrongQueue;
    session->downloader()->restartTransfer(b, &wrongQueue);
    EXPECT_TRUE(wrongQueue.has_value());
    vlr::OptionalError restarted;
    session->uploader()->restartTransfer(b, &restarted);
    EXPECT_FALSE(restarted.has_value() || b->isFinished() || b->error().has_value());
    EXPECT_EQ(session->uploader()->transfers(), (VLRTransferList{a, c, b}));
    EXPECT_TRUE(session->completedTransfers().isEmpty());

    session->pauseAllTransfers(false);
    ASSERT_TRUE(waitUntil([&] { return finished(a) && finished(b); }));
    QCoreApplication::processEvents();
    EXPECT_FALSE(finished(c));
    EXPECT_EQ(session->completedTransfers(), (VLRTransferList{a, b}));
    EXPECT_EQ(session->uploader()->transfers(), VLRTransferList{c});
    c->unpause();
    ASSERT_TRUE(waitUntil([&] { return finished(c); }));

    // Cancelling a finished transfer takes it off the completed list.
    a->cancel();
    EXPECT_EQ(session->completedTransfers(), (VLRTransferList{b, c}));
    EXPECT_EQ(recorder.count(QStringLiteral("transfersPaused")), 2);
}

TEST_F(Transfers, CompletedListSurvivesANewSessionUntilCleared)
{
    auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    const VLRTransferReportingPtr done = upload(session, writeFile(source + QStringLiteral("/done.txt"), "d"));
    ASSERT_TRUE(waitUntil([&] { return finished(done); }));
    session->pauseAllTransfers(true);
    const VLRTransferReportingPtr cancelled = upload(session, writeFile(source + QStringLiteral("/x.txt"), "x"));
    const VLRTransferReportingPtr waiting = upload(session, writeFile(source + QStringLiteral("/w.txt"), "w"));
    cancelled->cancel();
    session->logoutWithCompletionHandler(nullptr);
    session.reset();
    library().init().shutdown();

    session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    ASSERT_EQ(session->completedTransfers().size(), 2);
    EXPECT_EQ(session->completedTransfers().at(0)->identifier(), done->identifier());
    EXPECT_EQ(session->completedTransfers().at(0)->fractionCompleted(), 1.0);
    EXPECT_EQ(session->completedTransfers().at(1)->identifier(), cancelled->identifier());
    EXPECT_EQ(session->completedTransfers().at(1)->error()->code, 3072);
    // The waiting one is back in its queue, and runs (pause-all was not kept).
    ASSERT_EQ(session->uploader()->transfers().size() + session->completedTransfers().size(), 3);
    ASSERT_TRUE(waitUntil([&] { return session->completedTransfers().size() == 3; }));
    EXPECT_EQ(session->completedTransfers().at(2)->identifier(), waiting->identifier());

    // A failed upload's partial copy, however it got there, goes with the list.
    const QString partial =
        databaseFolder() + QStringLiteral("/Store/tmp/") + cancelled->identifier() + QStringLiteral("-0.part");
    writeFile(partial, "x");
    session->clearCompletedTransfers();
    EXPECT_TRUE(session->completedTransfers().isEmpty());
    ASSERT_TRUE(waitUntil([&] { return !QFileInfo::exists(partial); }));
    session->logoutWithCompletionHandler(nullptr);
    session.reset();
    library().init().shutdown();
    session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    EXPECT_TRUE(session->completedTransfers().isEmpty());
}

// What a killed or failed transfer left is gone after the failure or at the
// next start; only what a queued upload resumes from, or what someone is
// still writing, stays.
TEST_F(Transfers, LeftoversOfKilledAndFailedTransfersDoNotStay)
{
    const QString tmp = databaseFolder() + QStringLiteral("/Store/tmp/");
    auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    // The store can't take this content: its folder's name is taken by a file.
    const QByteArray blocked = "blocked";
    QDir().mkpath(tmp);
    writeFile(databaseFolder() + QStringLiteral("/Store/") + QString::fromLatin1(Sha256::of(blocked).left(2)), "");
    const VLRTransferReportingPtr failed = upload(session, writeFile(source + QStringLiteral("/b.txt"), blocked));
    ASSERT_TRUE(waitUntil([&] { return finished(failed); }));
    ASSERT_TRUE(failed->error().has_value());
    EXPECT_TRUE(waitUntil([&] { return QDir(tmp).isEmpty(); })) << QDir(tmp).entryList().join(u' ').toStdString();
    // A download copied whole fails at its end: the earlier download can't
    // go to the cache, whose folder's name is taken by a file.
    const VLRTransferReportingPtr done = upload(session, writeFile(source + QStringLiteral("/d.txt"), "d"));
    ASSERT_TRUE(waitUntil([&] { return finished(done); }));
    const VLRTransferReportingPtr first = download(session, linkOf(done)).transfer;
    ASSERT_TRUE(waitUntil([&] { return finished(first); }));
    writeFile(databaseFolder() + QStringLiteral("/DownloadCache"), "");
    const VLRTransferReportingPtr again = download(session, linkOf(done)).transfer;
    ASSERT_TRUE(waitUntil([&] { return finished(again); }));
    ASSERT_TRUE(again->error().has_value());
    EXPECT_TRUE(waitUntil([&] {
        return QDir(home() + QStringLiteral("/Veluria/Shared")).entryList(QDir::Hidden | QDir::Files).size() == 1;
    }));
    session->logoutWithCompletionHandler(nullptr);
    session.reset();
    library().init().shutdown();

    TransferJob queued;
    queued.id = QStringLiteral("queued");
    queued.userId = ann;
    queued.paused = true;
    queued.workspaceId = shared;
    queued.filePath = writeFile(source + QStringLiteral("/q.txt"), "queued");
    TransferJob download;
    download.id = QStringLiteral("download");
    download.userId = ann;
    download.type = TransferJob::Download;
    download.finished = true;
    download.filePath = home() + QStringLiteral("/Veluria/Shared/big.bin");
    download.error = ServiceError::make(ServiceError::FileUnwritable);
    ASSERT_TRUE(TransferStore(database()).save(queued) && TransferStore(database()).save(download));
    QDir().mkpath(home() + QStringLiteral("/Veluria/Shared"));
    const QString downloadPartial = writeFile(DownloadRun::partialPathFor(download.filePath), randomBytes(4096));
    for (const QString& name : {QStringLiteral("killed-0.part"), QStringLiteral("queued-0.part"),
                                QStringLiteral("written-0.part"), QString::fromLatin1(Sha256::of("x")) + ".part"})
        writeFile(tmp + name, "partial");
    QFile written(tmp + QStringLiteral("written-0.part"));
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    PrivateFiles::markInUse(written.handle());

    session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    EXPECT_EQ(QDir(tmp).entryList(QDir::Files),
              (QStringList{QStringLiteral("queued-0.part"), QStringLiteral("written-0.part")}));
    EXPECT_FALSE(QFileInfo::exists(downloadPartial));
}

TEST_F(Transfers, DownloadRequestsThatCantBeServedSaySo)
{
    const QString bob = addUser(QStringLiteral("bob@example.com"), QStringLiteral("pw"));
    const QString bobs = addWorkspace(QStringLiteral("Bob's"), bob);
    const QString revision =
        WorkspaceStore(database())
            .addRevision(bobs, bob, QStringLiteral("secret.txt"), QString(64, QLatin1Char('a')), false, 1, QString());
    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    const QString unknown = DownloadLink::make(shared, QStringLiteral("0b2d9d4c-a4cf-43c0-ae70-c2df40616431"));
    const QList<QPair<QString, qint64>> cases{{DownloadLink::make(shared, revision) + QStringLiteral("&extra=1"), 35},
                                              {unknown, 12},
                                              {DownloadLink::make(shared, revision), 12},
                                              {DownloadLink::make(bobs, revision), 10}};
    for (const auto& [link, code] : cases) {
        const Requested answer = download(session, link);
        EXPECT_EQ(answer.transfer, nullptr) << link.toStdString();
        ASSERT_TRUE(answer.error.has_value()) << link.toStdString();
        EXPECT_EQ(answer.error->code, code) << link.toStdString();
    }
    EXPECT_EQ(download(session, QStringLiteral("nonsense")).error->localizedDescription,
              QStringLiteral("This is not a valid Veluria download link."));
    const Requested noFolder = download(session, DownloadLink::make(bobs, revision), QUrl(QStringLiteral("http://x/")));
    EXPECT_EQ(noFolder.error->code, 3072);
    EXPECT_TRUE(session->downloader()->transfers().isEmpty());
}

TEST_F(Transfers, NewerRevisionsComeDownByThemselvesAndTheCacheKeepsItsLimit)
{
    const QString bob = addUser(QStringLiteral("bob@example.com"), QStringLiteral("pw"), QStringLiteral("Bob"));
    WorkspaceStore(database()).addMember(shared, bob, WorkspaceStore::MemberRole);
    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    const VLRTransferReportingPtr first =
        upload(session, writeFile(source + QStringLiteral("/plan.txt"), "first plan"));
    ASSERT_TRUE(waitUntil([&] { return finished(first); }));
    const Requested down = download(session, linkOf(first));
    ASSERT_TRUE(waitUntil([&] { return finished(down.transfer); }));
    const QString target = home() + QStringLiteral("/Veluria/Shared/plan.txt");
    ASSERT_EQ(readFile(target), QByteArray("first plan"));

    // Bob publishes a newer plan from his own client.
    const auto bobSession = signedIn(QStringLiteral("bob@example.com"), QStringLiteral("pw"));
    vlr::OptionalError error;
    const QString bobsCopy = home() + QStringLiteral("/bob/plan.txt");
    QDir().mkpath(home() + QStringLiteral("/bob"));
    bobSession->uploadAndPublishNewRevision(QUrl::fromLocalFile(writeFile(bobsCopy, "second plan, longer")), shared,
                                            false, QStringLiteral("v2"), &error);
    ASSERT_FALSE(error.has_value());

    ASSERT_TRUE(waitUntil([&] { return session->completedTransfers().size() == 3; }));
    EXPECT_EQ(readFile(target), QByteArray("second plan, longer"));
    EXPECT_EQ(session->completedTransfers().last()->subType(), 2);
    EXPECT_EQ(session->completedTransfers().last()->fileURL(), QUrl::fromLocalFile(target));

    // The first plan went to the download cache ...
    const QString cache = databaseFolder() + QStringLiteral("/DownloadCache");
    auto cached = [&] {
        QStringList found;
        QDirIterator files(cache, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            found.append(readFile(files.next()));
        return found;
    };
    EXPECT_EQ(cached(), QStringList{QStringLiteral("first plan")});
    // ... and stays there only while the limit allows.
    auto limit = [&] {
        qint64 bytes = -1;
        session->getDownloadCacheSizeWithCompletionHandler([&](qint64 b, const vlr::OptionalError&) { bytes = b; });
        EXPECT_TRUE(waitUntil([&] { return bytes >= 0; }));
        return bytes;
    };
    EXPECT_EQ(limit(), 1000000000);
    session->setDownloadCacheSize(5);
    ASSERT_TRUE(waitUntil([&] { return cached().isEmpty(); }));
    EXPECT_EQ(limit(), 5);
}

} // namespace
