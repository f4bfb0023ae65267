// The transfers tab on the real service library: a file published through
// the library shows in the uploads list and moves, with its row, to the
// completed list when it is done.

#include "fakes/FakeClientServices.h"
#include "pages/RecordingPages.h"
#include "sdk/accounts/AccountStore.h"
#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/local/EmbeddedServiceLibrary.h"
#include "sdk/workspaces/WorkspaceStore.h"
#include "service/VLRLogHandler.h"
#include "service/VLRTransferQueue.h"
#include "service/VLRTransferReporting.h"
#include "service/VLRUtils.h"
#include "session/MainViewController.h"
#include "signin/LoginViewController.h"
#include "transfers/TransferRow.h"
#include "transfers/TransfersViewController.h"
#include "widgets/StatusItemImageView.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

TEST(TransfersOnTheEmbeddedLibrary, APublishedFileMovesFromUploadsToCompletedWithItsRow)
{
    vlr::setLogFilePath(QString());
    QTemporaryDir data;
    EmbeddedServiceLibrary library;
    library.utils().setDatabaseLocation(QUrl::fromLocalFile(data.path()));
    QString workspaceId;
    {
        auto database = Database::open(data.path(), nullptr);
        ASSERT_TRUE(database);
        const QString userId =
            AccountStore(*database).add("ada@example.com", "Ada", QString(), "s3cret", false, nullptr);
        workspaceId = WorkspaceStore(*database).create("Posters", userId, Clock::nowMs());
    }

    FakeClientServices fakes(data.filePath("settings"));
    ClientServices services = fakes.services();
    services.library = &library;
    PageJournal journal;
    RecordingParts parts(&journal);
    MainViewControllerParts taken = parts.take();
    auto owned = std::make_unique<TransfersViewController>(services);
    TransfersViewController* page = owned.get();
    taken.transfersViewController = std::move(owned);
    StatusItemImageView statusView(QRect(0, 0, 24, 24), true);
    RecordingApplication application(&journal);
    application.statusView = &statusView;
    MainViewController controller(std::move(taken), &application, services);
    controller.loadView();

    VLRUserSessionPtr session;
    library.createUserSessionWithLoginCredentials(
        VLRLoginCredentials("ada@example.com", "s3cret"), LoginViewController::APIKey, true,
        [&](const VLRUserSessionPtr& s, const VLRLoginVerifierPtr&, const vlr::OptionalError&) { session = s; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return session != nullptr; }, 10000));
    controller.didLoginWithSession(session, false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !session->syncingLists(); }, 10000));

    QFile file(data.filePath("poster.pdf"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(2 << 20, 'p'));
    file.close();
    // Paused from the page, the upload waits in the list.
    TransfersControlPanelViewController* panel = page->uploadsControlPanelViewController();
    panel->pauseResumeAll();
    ASSERT_TRUE(QTest::qWaitFor([&] { return panel->transfersPaused(); }, 10000));
    vlr::OptionalError error;
    session->uploadAndPublishNewRevision(QUrl::fromLocalFile(file.fileName()), workspaceId, false, QString(), &error);
    ASSERT_FALSE(error) << error->localizedDescription.toStdString();
    ASSERT_TRUE(QTest::qWaitFor([&] { return page->uploadsRows().size() == 1; }, 10000));
    const std::shared_ptr<TransferRow> row = page->uploadsRows().first();
    EXPECT_EQ(row->nameView().text, "POSTER.PDF");
    EXPECT_EQ(page->tabSelectorViewController()->uploadsButton()->badgeValue(), 1);

    panel->pauseResumeAll();
    ASSERT_TRUE(QTest::qWaitFor([&] { return page->uploadsRows().isEmpty(); }, 20000));
    ASSERT_EQ(page->completedRows().size(), 1);
    EXPECT_EQ(page->completedRows().first(), row);
    EXPECT_EQ(row->statusView().imageName, "queue_icon_transfer_completed");
    EXPECT_EQ(row->sizeView().text, "2 MB");

    session->logoutWithCompletionHandler({});
    library.init().shutdown();
}
