#pragma once

#include "app/VLRTab.h"
#include "marketplace/MarketplaceViewControllerDelegate.h"
#include "platform/ClientServices.h"
#include "platform/VLRUserNotificationCenterDelegate.h"
#include "preferences/PreferencesViewControllerDelegate.h"
#include "service/VLRObject.h"
#include "service/VLRUserSessionDelegate.h"
#include "session/MainViewControllerParts.h"
#include "session/TabSelectorViewControllerDelegate.h"
#include "signin/LoginMfaViewControllerDelegate.h"
#include "signin/LoginViewControllerDelegate.h"
#include "transfers/TransfersViewControllerDelegate.h"
#include "widgets/StatusItemImageView.h"
#include "widgets/StatusItemImageViewDelegate.h"
#include "widgets/VLRView.h"
#include "widgets/VLRViewDelegate.h"
#include "workspaces/FileDropViewControllerDelegate.h"
#include "workspaces/WorkspacesViewControllerDelegate.h"

#include <QFileDialog>
#include <QObject>
#include <QPointer>
#include <QStackedWidget>

class ApplicationRoot;
class WorkspaceLocationDelegate;

// The heart of the client: it owns the one session, the popover and every
// page, binds and unbinds the session, turns observed changes into calls on
// the pages, decides what the status item shows, and routes drags, download
// requests and notifications. Every change of the bound session goes through
// sessionDidChange.
class LocalPageWindow;

class MainViewController : public QObject,
                           public TabSelectorViewControllerDelegate,
                           public LoginViewControllerDelegate,
                           public TransfersViewControllerDelegate,
                           public FileDropViewControllerDelegate,
                           public WorkspacesViewControllerDelegate,
                           public PreferencesViewControllerDelegate,
                           public MarketplaceViewControllerDelegate,
                           public VLRUserSessionDelegate,
                           public VLRViewDelegate,
                           public LoginMfaViewControllerDelegate,
                           public StatusItemImageViewDelegate,
                           public VLRUserNotificationCenterDelegate,
                           public VLRKeyValueObserver
{
    Q_OBJECT

public:
    MainViewController(MainViewControllerParts parts, ApplicationRoot* application, const ClientServices& services,
                       QObject* parent = nullptr);
    ~MainViewController() override;

    // Wiring; called once, right after the status item exists.
    void loadView();
    QWidget* view() const;

    void sessionDidChange(const VLRUserSessionPtr& session);

    // Sign-in.
    void didLoginWithSession(const VLRUserSessionPtr& session) override;
    void didLoginWithSession(const VLRUserSessionPtr& session, bool bypassedUI) override;
    void loginWithVerifier(const VLRLoginVerifierPtr& verifier) override;
    void cancelMfa(LoginMfaPage* controller) override;

    // The end of the application: logs out without waiting.
    void applicationWillTerminate();

    // Status item and popover.
    void togglePopover();
    void showFileDropView();
    // Opens the popover on that list of the transfers tab (1 uploads, 2
    // downloads, 3 completed), with that transfer selected if it is there.
    void showTransfersTab(int list, const QString& andSelectTransfer);
    void statusItemImageViewDidReceiveMouseDownEvent(StatusItemImageView* view) override;
    void statusItemImageViewDidReceiveDragEvent(StatusItemImageView* view) override;
    void statusItemImageViewDidReceiveFiles(StatusItemImageView* view, const QStringList& files) override;
    void viewDidReceiveDroppedFiles(VLRView* view, const QStringList& files) override;
    void viewDidReceiveDraggingEvent(VLRView* view) override;

    // Publishes an installer's file into the catalogue with the JSON
    // description beside it (see InstallerDescription): an installer of that
    // name gets the file as a new revision, otherwise one is made. A
    // description that can't be used is an error for the handler, and then
    // nothing is published.
    void uploadInstallerWithDescription(const QUrl& fileURL, const QByteArray& json,
                                        const VLRErrorHandler& completionHandler);
    // Download requests, and a script's answer to the open folder question.
    void downloadUrl(const QString& url);
    bool setWorkspaceDownloadLocation(const QUrl& location, vlr::OptionalError* error);

    // Session delegate.
    void passwordChanged() override;
    void downstreamProxyUnavailable() override;
    void currentVersionIsUnsupported() override;
    void clientKeyExpired() override;
    void getFolderURLFromUser(const QString& title, const QUrl& baseURL,
                              const VLRFolderValidationHandler& validationHandler,
                              const VLRFolderCompletionHandler& completionHandler) override;
    void workspace(const VLRWorkspacePtr& workspace, const VLRPublicationList& hasNewPublications) override;

    // Tab bar.
    bool tabSelectorViewControllerTabSupported(TabBar* controller, int tab) override;
    bool tabSelectorViewControllerShouldSelectTab(TabBar* controller, int tab) override;
    void tabSelectorViewControllerDidSelectTab(TabBar* controller, int tab) override;
    void tabSelectorViewControllerDidReceiveDroppedFiles(TabBar* controller, const QStringList& files) override;

    // Transfers tab.
    void transfersViewControllerDidClearCompleted(TransfersPage* controller) override;
    void transfersViewControllerDidPauseTransfers(TransfersPage* controller, bool pause) override;
    void transfersViewControllerRestartedUpload(TransfersPage* controller,
                                                const VLRTransferReportingPtr& transfer) override;
    void transfersViewControllerRestartedDownload(TransfersPage* controller,
                                                  const VLRTransferReportingPtr& transfer) override;
    bool transfersViewControllerEmailNeedsConfirmation() override;
    bool transfersViewControllerLoading() override;
    void transfersViewControllerMovedUploads(TransfersPage* controller, const VLRTransferList& movedUploads,
                                             const VLRTransferReportingPtr& aboveReferenceUpload) override;
    void transfersViewControllerMovedDownloads(TransfersPage* controller, const VLRTransferList& movedDownloads,
                                               const VLRTransferReportingPtr& aboveReferenceDownload) override;

    // File drop tab.
    void fileDropViewControllerUploadedFiles(FileDropPage* controller, const std::optional<QStringList>& uploadedFiles,
                                             const VLRWorkspacePtr& toWorkspace, const QString& withComment,
                                             bool publish, const VLRErrorHandler& completionHandler) override;
    void fileDropViewControllerCreatedWorkspaceNamed(FileDropPage* controller, const QString& createdWorkspaceNamed,
                                                     const std::optional<QStringList>& withFiles,
                                                     const QString& comment,
                                                     const VLRErrorHandler& completionHandler) override;
    void fileDropViewControllerWantsPopUpToggled(FileDropPage* controller) override;
    bool fileDropViewControllerEmailNeedsConfirmation() override;
    bool fileDropViewControllerLoading() override;

    // Workspaces tab.
    void workspaceViewControllerHadCellClicked(WorkspacesPage* controller) override;
    void workspaceViewControllerDidReceiveFiles(WorkspacesPage* controller, const QStringList& files,
                                                const VLRWorkspacePtr& forWorkspace) override;
    void workspaceViewControllerCreateWorkspaceClicked() override;
    bool workspaceViewControllerEmailNeedsConfirmation() override;
    bool workspaceViewControllerLoading() override;

    // Preferences tab.
    bool willVeluriaLaunchAtStartup() override;
    bool preferencesViewControllerWantsVeluriaLaunchedAtStartup(PreferencesPage* controller, bool launch) override;
    void preferencesViewControllerDidSetDownloadCacheSize(PreferencesPage* controller, qint64 bytes) override;
    void preferencesViewControllerDidModifyArchiveMode(PreferencesPage* controller, bool archiveMode) override;
    void preferencesViewControllerWantsLogIn(PreferencesPage* controller) override;
    void preferencesViewControllerWantsLogOut(PreferencesPage* controller) override;
    void preferencesViewControllerWantsHelp(PreferencesPage* controller) override;
    void preferencesViewControllerWantsQuit(PreferencesPage* controller) override;

    // Marketplace tab.
    void marketplaceViewControllerDidChangeUpdateCountTo(MarketplacePage* controller, qint64 count,
                                                         bool isWarning) override;
    bool marketplaceViewControllerLoading() override;

    // Notifications.
    bool userNotificationCenterShouldPresentNotification(VLRUserNotificationCenter* center,
                                                         const VLRUserNotificationPtr& notification) override;
    void userNotificationCenterDidActivateNotification(VLRUserNotificationCenter* center,
                                                       const VLRUserNotificationPtr& notification) override;

    // Observed changes of the session and of the current transfers.
    void observeValueForKeyPath(const QString& keyPath, VLRObject* object, const vlr::KeyValueChange& change,
                                void* context) override;

    // State, for the application and for scripts.
    const VLRUserSessionPtr& userSession() const { return m_userSession; }
    const VLRTransferReportingPtr& currentUpload() const { return m_currentUpload; }
    const VLRTransferReportingPtr& currentDownload() const { return m_currentDownload; }
    bool openedCurrentDownload() const { return m_openedCurrentDownload; }
    bool downloadingURL() const { return m_downloadingURL; }
    const QString& autoSignInURL() const { return m_autoSignInURL; }
    QFileDialog* workspaceLocationOpenPanel() const { return m_workspaceLocationOpenPanel; }
    bool marketplaceTabShown() const { return m_marketplaceTabShown; }
    bool settingsTabShown() const { return m_settingsTabShown; }
    Popover* popover() const { return m_parts.popover.get(); }
    LoginPage* loginViewController() const { return m_parts.loginViewController.get(); }
    FileDropPage* fileDropViewController() const { return m_parts.fileDropViewController.get(); }
    QStackedWidget* tabView() const { return m_tabView; }
    StatusItemImageView* statusItemImageView() const;

private:
    // This controller, or none at teardown, as the delegate of every page.
    void setDelegateOfParts(MainViewController* delegate);
    void signOut();
    void logOutThen(const std::function<void()>& afterUnbinding);
    void quit();
    void openHelp();
    void updateStatusIndication(const VLRUserSessionPtr& session);
    void trackCurrentTransfers(const VLRUserSessionPtr& session);
    void releaseCurrentTransfers();
    // The handlers of observed changes, one a token or a group of tokens; the
    // table from token to handler is in observeValueForKeyPath.
    using ChangeHandler = void (MainViewController::*)(const QString& keyPath, const vlr::KeyValueChange& change);
    void handleCurrentDownloadChange(const QString& keyPath, const vlr::KeyValueChange& change);
    void handleCurrentUploadChange(const QString& keyPath, const vlr::KeyValueChange& change);
    void userDidChange(const QString&, const vlr::KeyValueChange&);
    void workspacesDidChange(const QString&, const vlr::KeyValueChange&);
    void uploadsDidChange(const QString&, const vlr::KeyValueChange&);
    void downloadsDidChange(const QString&, const vlr::KeyValueChange&);
    void completedTransfersDidChange(const QString&, const vlr::KeyValueChange&);
    void uploadThroughputDidChange(const QString&, const vlr::KeyValueChange&);
    void downloadThroughputDidChange(const QString&, const vlr::KeyValueChange&);
    void uploadTimeRemainingDidChange(const QString&, const vlr::KeyValueChange&);
    void downloadTimeRemainingDidChange(const QString&, const vlr::KeyValueChange&);
    void transfersPausedDidChange(const QString&, const vlr::KeyValueChange&);
    void syncingListsDidChange(const QString&, const vlr::KeyValueChange&);
    void activityDidChange(const QString&, const vlr::KeyValueChange&);
    void installersDidChange(const QString&, const vlr::KeyValueChange&);
    void installerUpdatesDidChange(const QString&, const vlr::KeyValueChange&);
    void neverInstalledDidChange(const QString&, const vlr::KeyValueChange&);
    void notInstalledDidChange(const QString&, const vlr::KeyValueChange&);
    void purchasesDidChange(const QString&, const vlr::KeyValueChange&);
    void showHideMarketplaceTab(const VLRUserSessionPtr& session);
    void showHideSettingsTab();
    void showLoginTab();
    void showFileDropTabWithFiles(const QStringList& files);
    void showUpdates();
    void openPopoverIfClosed();
    void selectTab(int tab);
    void addSessionObservers(const VLRUserSessionPtr& session);
    void removeSessionObservers(const VLRUserSessionPtr& session);
    void updateStateOfPages(bool withMarketplace);
    void uploadInstallerAtFileURLJSONDictionaryCompletionHandler(const QUrl& fileURL, const QVariantMap& dictionary,
                                                                 const VLRErrorHandler& completionHandler);

    ApplicationRoot* m_application;
    ClientServices m_services;
    MainViewControllerParts m_parts;

    QPointer<StatusItemImageView> m_statusItemImageView;
    QPointer<VLRView> m_view;
    QPointer<QWidget> m_tabSelectorView;
    QPointer<QStackedWidget> m_tabView;

    VLRUserSessionPtr m_userSession;
    VLRTransferReportingPtr m_currentUpload;
    VLRTransferReportingPtr m_currentDownload;
    bool m_openedCurrentDownload = false;
    bool m_downloadingURL = false;
    bool m_marketplaceTabShown = false;
    bool m_settingsTabShown = false;
    QString m_autoSignInURL;
    std::unique_ptr<WorkspaceLocationDelegate> m_workspaceLocationDelegate;
    QPointer<QFileDialog> m_workspaceLocationOpenPanel;
    QPointer<LocalPageWindow> m_helpWindow;
};
