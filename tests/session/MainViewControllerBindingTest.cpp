#include "session/MainViewControllerHarness.h"

#include "fakes/FakeLoginVerifier.h"
#include "fakes/FakeTransfer.h"
#include "fakes/FakeWorkspace.h"
#include "service/VLRPurchase.h"
#include "widgets/VLRView.h"

namespace {

// What a tab that was never given a badge reads as, so that a badge the
// controller forgets to reset does not pass for a zero.
const QPair<qint64, bool> kNoBadge(-1, true);

const QStringList registrationOrder = {"add session user",
                                       "add session projects",
                                       "add session workspaces",
                                       "add session completedTransfers",
                                       "add session syncingLists",
                                       "add session syncingWorkspaces",
                                       "add session transfersPaused",
                                       "add session installers",
                                       "add session purchases",
                                       "add updater installerUpdates",
                                       "add updater neverInstalled",
                                       "add updater notInstalled",
                                       "add updater overallOperations",
                                       "add uploader transfers",
                                       "add uploader throughput",
                                       "add uploader timeRemaining",
                                       "add uploader timeRemainingInvalid",
                                       "add uploader currentTransfer",
                                       "add downloader transfers",
                                       "add downloader throughput",
                                       "add downloader timeRemaining",
                                       "add downloader timeRemainingInvalid",
                                       "add downloader currentTransfer"};

QStringList asRemovals(QStringList order)
{
    order.replaceInStrings(QStringLiteral("add "), QStringLiteral("remove "));
    order.swapItemsAt(4, 5);
    return order;
}

int observationsLeft(const std::shared_ptr<FakeUserSession>& session)
{
    return session->observationCount() + session->uploader()->observationCount()
        + session->downloader()->observationCount() + session->updater()->observationCount();
}

} // namespace

TEST_F(MainViewControllerTest, BindingRegistersEveryObserverInOrderAndUnbindingRemovesThemInItsOwn)
{
    auto session = FakeUserSession::make();
    controller->didLoginWithSession(session, true);
    EXPECT_EQ(session->observations.withPrefix("add"), registrationOrder);
    EXPECT_EQ(session->log.names().first(), "sortWorkspaces");
    EXPECT_EQ(session->log.lastArguments("sortWorkspaces"), QVariantList{3});
    EXPECT_EQ(session->delegate(), controller.get());

    session->observations.entries.clear();
    controller->cancelMfa(parts.loginMfa);
    EXPECT_EQ(session->observations.entries, asRemovals(registrationOrder));
    EXPECT_EQ(observationsLeft(session), 0);
    EXPECT_EQ(controller->userSession(), nullptr);

    // Binding the same session twice removes and registers everything again.
    controller->sessionDidChange(session);
    session->observations.entries.clear();
    controller->sessionDidChange(session);
    EXPECT_EQ(session->observations.entries, asRemovals(registrationOrder) + registrationOrder);
    EXPECT_EQ(observationsLeft(session), 23);
}

TEST_F(MainViewControllerTest, InitialDeliveriesFillTheListsInsideTheBindingBeforeTheFills)
{
    auto session = FakeUserSession::make();
    auto upload = FakeTransfer::make("u1", 1, "/tmp/a.psd");
    auto queued = FakeTransfer::make("u2", 1, "/tmp/b.psd");
    session->fakeUploader()->setTransfers({upload, queued});
    session->fakeUploader()->setCurrentTransfer(upload);
    session->setCompletedTransfers({FakeTransfer::make("c1", 2, "/tmp/c.zip")});
    session->setTransfersPaused(true);
    session->setWorkspaces({FakeWorkspace::make("w1", "Alpha")});

    controller->didLoginWithSession(session, false);

    const QStringList fills = journal.entries;
    const auto at = [&](const QString& entry) { return fills.indexOf(entry); };
    ASSERT_GE(at("transfers.setCompleted 1"), 0);
    EXPECT_LT(at("transfers.setCompleted 1"), at("transfers.setTransfersPaused true"));
    EXPECT_LT(at("transfers.setTransfersPaused true"), at("transfers.setUploads 2"));
    EXPECT_LT(at("transfers.setUploads 2"), at("transfers.setDownloads 0"));
    EXPECT_LT(at("transfers.setDownloads 0"), at("workspaces.updateWorkspaces 1"));
    EXPECT_EQ(controller->currentUpload(), upload);
    EXPECT_EQ(upload->observationCount(), 4);
    EXPECT_EQ(statusView->viewState(), 3);
    EXPECT_EQ(parts.tabs->badges.value(4), qMakePair(qint64(2), false));

    // The fills of the binding, in their order, after the initial deliveries.
    const QStringList expectedFills = {"workspaces.updateWorkspaces 1",
                                       "fileDrop.updateWorkspaces 1",
                                       "marketplace.updateNotInstalled 0",
                                       "marketplace.updateNewInstallers 0",
                                       "marketplace.updateInstallerUpdates 0",
                                       "marketplace.updateInstallers 0",
                                       "marketplace.updatePurchases 0",
                                       "marketplace.setLoggedIn true",
                                       "preferences.updateWithUser ada@example.com",
                                       "preferences.setLoggedIn true"};
    EXPECT_EQ(fills.mid(at("workspaces.updateWorkspaces 1"), expectedFills.size()), expectedFills);
    EXPECT_EQ(fills.indexOf("tabs.selectTab 2"), fills.size() - 1);
    EXPECT_EQ(service().announcedSessions.value(0), session);
}

TEST_F(MainViewControllerTest, UnbindingWithNothingBoundShowsTheLoginPageAndFillsWithNil)
{
    controller->sessionDidChange(nullptr);
    EXPECT_EQ(journal.entries.first(), "tabs.selectTab 0");
    for (const char* fill :
         {"preferences.updateWithUser nil", "marketplace.setLoggedIn false", "workspaces.updateWorkspaces 0"})
        EXPECT_TRUE(journal.entries.contains(fill)) << fill;
    EXPECT_EQ(parts.tabs->badges.value(4, kNoBadge), qMakePair(qint64(0), false));
    EXPECT_EQ(parts.tabs->badges.value(3, kNoBadge), qMakePair(qint64(0), false));
    EXPECT_EQ(controller->tabView()->currentIndex(), 0);
    EXPECT_EQ(statusView->viewState(), 1);
    // The settings tab becomes available at the first binding or unbinding.
    EXPECT_TRUE(controller->settingsTabShown());
    ASSERT_EQ(service().announcedSessions.size(), 1);
    EXPECT_EQ(service().announcedSessions.first(), nullptr);
}

TEST_F(MainViewControllerTest, TheFirstTabAfterSignInAndAWaitingDownloadRequest)
{
    controller->downloadUrl("veluria:first");
    controller->downloadUrl("veluria:second");
    EXPECT_EQ(controller->autoSignInURL(), "veluria:second");
    EXPECT_TRUE(journal.entries.isEmpty());

    auto session = FakeUserSession::make();
    session->setHasPurchases(true);
    session->setHasWorkspaces(false);
    controller->didLoginWithSession(session, false);

    EXPECT_TRUE(journal.entries.contains("marketplace.showUpdatesTab"));
    EXPECT_EQ(parts.tabs->selected, 3);
    EXPECT_EQ(session->log.count("downloadUrl"), 1);
    EXPECT_EQ(session->log.lastArguments("downloadUrl"), QVariantList{"veluria:second"});
    EXPECT_TRUE(controller->autoSignInURL().isNull());
    EXPECT_TRUE(controller->marketplaceTabShown());
}

TEST_F(MainViewControllerTest, SigningOutWaitsForTheLibraryAndAKeepsTheSessionWhenRefused)
{
    controller->preferencesViewControllerWantsLogOut(parts.preferences);
    EXPECT_TRUE(journal.entries.isEmpty()); // nothing bound, nothing asked

    auto session = bind();
    controller->preferencesViewControllerWantsLogOut(parts.preferences);
    ASSERT_EQ(session->logoutHandlers.count(), 1);
    session->logoutHandlers.complete(vlr::Error{"VLRFrameworkErrorDomain", 9, "An update is being installed.", {}});
    EXPECT_EQ(controller->userSession(), session);
    ASSERT_EQ(notifications->scheduledNotifications().size(), 1u);
    const auto refused = notifications->lastScheduledNotification();
    EXPECT_EQ(refused->title(), "Veluria is busy updating software...please stand by");
    EXPECT_EQ(refused->informativeText(), "An update is being installed.");
    EXPECT_EQ(refused->userInfo(),
              (QVariantMap{{"VLRUserNotificationTypeKey", "VLRUserNotificationTypeErrorLoggingOut"}}));
    EXPECT_FALSE(journal.entries.contains("login.clearPassword"));

    parts.tabs->badges.clear();
    controller->preferencesViewControllerWantsLogOut(parts.preferences);
    session->logoutHandlers.complete(std::nullopt);
    EXPECT_EQ(controller->userSession(), nullptr);
    EXPECT_EQ(statusView->viewState(), 1);
    EXPECT_EQ(parts.tabs->badges.value(3, kNoBadge), qMakePair(qint64(0), false));
    EXPECT_EQ(journal.withPrefix("login."), QStringList{"login.clearPassword"});
    EXPECT_TRUE(journal.entries.contains("fileDrop.clearFields"));
    EXPECT_EQ(journal.withPrefix("preferences.updateWithUser").last(), "preferences.updateWithUser nil");
}

TEST_F(MainViewControllerTest, QuitEndsAtOnceWhenSignedOutAndAfterTheLogoutOtherwise)
{
    controller->preferencesViewControllerWantsQuit(parts.preferences);
    EXPECT_EQ(journal.entries, QStringList{"app.terminate"});

    auto session = bind();
    controller->preferencesViewControllerWantsQuit(parts.preferences);
    EXPECT_FALSE(journal.entries.contains("app.terminate"));
    session->logoutHandlers.complete(vlr::Error{"VLRFrameworkErrorDomain", 9, "busy", {}});
    EXPECT_FALSE(journal.entries.contains("app.terminate"));
    EXPECT_EQ(controller->userSession(), session);

    controller->preferencesViewControllerWantsQuit(parts.preferences);
    session->logoutHandlers.complete(std::nullopt);
    EXPECT_EQ(journal.entries.last(), "app.terminate");
    EXPECT_EQ(controller->userSession(), nullptr);

    // At the application's end the session is logged out without a handler.
    auto second = bind();
    controller->applicationWillTerminate();
    EXPECT_EQ(second->log.lastArguments("logoutWithCompletionHandler"), QVariantList{false});
}

TEST_F(MainViewControllerTest, TheLibraryEndingTheSession)
{
    auto session = bind(FakeUserSession::make("grace@example.com"));
    controller->passwordChanged();
    auto told = notifications->lastScheduledNotification();
    ASSERT_TRUE(told);
    EXPECT_EQ(told->title(), "Your password has changed!");
    EXPECT_EQ(told->informativeText(),
              "The password for user \"grace@example.com\" has changed. Please sign in again.");
    EXPECT_EQ(told->userInfo().value("VLRUserNotificationTypeKey"), "VLRUserNotificationTypePasswordChanged");
    EXPECT_FALSE(told->userInfo().contains("VLRUserNotificationObjectIdentifierKey"));
    EXPECT_EQ(session->logoutHandlers.count(), 1);
    session->logoutHandlers.clear();

    controller->downstreamProxyUnavailable();
    told = notifications->lastScheduledNotification();
    EXPECT_EQ(told->title(), "Communication error");
    EXPECT_EQ(told->informativeText(), "Veluria encountered a communication error. Please sign in again.");
    EXPECT_TRUE(told->userInfo().isEmpty());
    session->logoutHandlers.clear();

    controller->currentVersionIsUnsupported();
    EXPECT_EQ(session->logoutHandlers.count(), 1);
    EXPECT_TRUE(journal.entries.contains("app.checkForSoftwareUpdates"));
    session->logoutHandlers.clear();

    // An expired key signs in again silently, keeping password and files.
    journal.clear();
    controller->clientKeyExpired();
    session->logoutHandlers.complete(vlr::Error{"x", 1, "refused", {}});
    EXPECT_EQ(controller->userSession(), session);
    controller->clientKeyExpired();
    session->logoutHandlers.complete(std::nullopt);
    EXPECT_EQ(controller->userSession(), nullptr);
    EXPECT_EQ(journal.withPrefix("login."), QStringList{"login.defaultSignIn"});
    EXPECT_FALSE(journal.entries.contains("fileDrop.clearFields"));
    EXPECT_EQ(notifications->scheduledNotifications().size(), 2u);

    journal.clear();
    controller->clientKeyExpired();
    EXPECT_TRUE(journal.entries.isEmpty());
}

TEST_F(MainViewControllerTest, DownloadCacheSizeReachesPreferencesOnlyWithoutAnError)
{
    auto session = FakeUserSession::make();
    controller->didLoginWithSession(session, false);
    controller->didLoginWithSession(session, false);
    ASSERT_EQ(session->cacheSizeHandlers.count(), 2);
    session->cacheSizeHandlers.complete(qint64(0), vlr::Error{"x", 1, "no", {}});
    session->cacheSizeHandlers.complete(qint64(500) << 20, std::nullopt);
    EXPECT_EQ(journal.withPrefix("preferences.updateDownloadCacheSize"),
              QStringList{"preferences.updateDownloadCacheSize 524288000"});

    // A handler that arrives after the controller is gone does nothing.
    controller->didLoginWithSession(session, false);
    controller.reset();
    session->cacheSizeHandlers.complete(qint64(1), std::nullopt);
}

TEST_F(MainViewControllerTest, SessionsHandedOverByTheLibraryAndTheSecondFactor)
{
    auto handed = FakeUserSession::make();
    ASSERT_TRUE(service().updateSessionBlock);
    service().updateSessionBlock(handed);
    EXPECT_EQ(controller->userSession(), handed);
    EXPECT_EQ(handed->delegate(), nullptr);

    auto replacement = FakeUserSession::make();
    service().updateSessionBlock(replacement);
    EXPECT_EQ(observationsLeft(handed), 0);
    EXPECT_EQ(observationsLeft(replacement), 23);
    service().updateSessionBlock(nullptr);
    EXPECT_EQ(controller->userSession(), nullptr);

    auto verifier = std::make_shared<FakeLoginVerifier>();
    controller->loginWithVerifier(verifier);
    EXPECT_EQ(parts.loginMfa->verifier, verifier);
    EXPECT_EQ(parts.tabs->selected, 0);
    EXPECT_EQ(controller->tabView()->currentIndex(), 6);
    // Preferences may be shown while the second factor waits.
    parts.tabs->selectTab(5);
    EXPECT_EQ(controller->tabView()->currentIndex(), 5);
    EXPECT_EQ(parts.loginMfa->verifier, verifier);
    controller->cancelMfa(parts.loginMfa);
    EXPECT_EQ(controller->tabView()->currentIndex(), 0);
}

TEST_F(MainViewControllerTest, DestroyingTheControllerUnbindsItsSession)
{
    // While it lives, its root view is the pages' grey ground and takes drops.
    const auto* root = qobject_cast<VLRView*>(controller->view());
    ASSERT_TRUE(root);
    EXPECT_EQ(root->backgroundColor(), QColor(233, 233, 233));
    EXPECT_TRUE(root->isDropTarget());

    auto session = bind();
    controller.reset();
    EXPECT_EQ(observationsLeft(session), 0);
}
