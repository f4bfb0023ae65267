#pragma once

#include "session/ApplicationRoot.h"
#include "session/MainViewControllerParts.h"

#include <QPointer>
#include <QStringList>
#include <QWidget>

// Stand-ins for the popover, the tab bar and every page, all writing what
// they are told into one shared journal in order, e.g.
// "workspaces.updateWorkspaces 2" or "tabs.selectTab 4".
class PageJournal
{
public:
    QStringList entries;

    void add(const QString& entry) { entries.append(entry); }
    QStringList withPrefix(const QString& prefix) const;
    int count(const QString& entry) const { return int(entries.count(entry)); }
    void clear() { entries.clear(); }
};

class RecordingPage
{
public:
    RecordingPage(PageJournal* journal, const QString& name);
    virtual ~RecordingPage();

protected:
    QWidget* pageView();
    void note(const QString& operation, const QString& argument = QString());

    PageJournal* m_journal;
    QString m_name;
    QPointer<QWidget> m_view;
};

class RecordingTabBar : public TabBar, public RecordingPage
{
public:
    explicit RecordingTabBar(PageJournal* journal);

    TabSelectorViewControllerDelegate* delegate = nullptr;
    int selected = 0;
    // The last badge each tab was given: value and warning flag.
    QMap<int, QPair<qint64, bool>> badges;
    bool activeUploads = false;
    bool activeDownloads = false;

    QWidget* view() override { return pageView(); }
    void setDelegate(TabSelectorViewControllerDelegate* d) override { delegate = d; }
    int selectedTab() const override { return selected; }
    // Asks the delegate like the real bar: it may refuse.
    void selectTab(int tab) override;
    void showActiveUploads(bool uploads, bool downloads) override;
    void setBadgeValue(qint64 value, int forTab, bool isWarning) override;
    void enableDisableTabs() override;
};

class RecordingPopover : public Popover, public RecordingPage
{
public:
    explicit RecordingPopover(PageJournal* journal);

    bool shown = false;
    QRect lastRect;

    bool isShown() const override { return shown; }
    void performClose() override;
    void showRelativeToRect(const QRect& rect, QWidget* ofView, int preferredEdge) override;
    void setContentView(QWidget*) override { note(QStringLiteral("setContentView")); }
    QWidget* window() override { return pageView(); }
};

class RecordingTransfersPage : public TransfersPage, public RecordingPage
{
public:
    explicit RecordingTransfersPage(PageJournal* journal);

    TransfersViewControllerDelegate* delegate = nullptr;
    VLRTransferList uploads, downloads, completed;

    QWidget* view() override { return pageView(); }
    void setDelegate(TransfersViewControllerDelegate* d) override { delegate = d; }
    void setUploads(const VLRTransferList& list) override;
    void setDownloads(const VLRTransferList& list) override;
    void setCompleted(const VLRTransferList& list) override;
    void setTransfersPaused(bool paused) override;
    void updateUploadThroughput(double value) override;
    void updateDownloadThroughput(double value) override;
    void updateUploadTimeRemaining(double seconds, bool isValid) override;
    void updateDownloadTimeRemaining(double seconds, bool isValid) override;
    void updateState() override { note(QStringLiteral("updateState")); }
    void showTab(int list, const QString& andSelectTransfer) override;
};

class RecordingWorkspacesPage : public WorkspacesPage, public RecordingPage
{
public:
    explicit RecordingWorkspacesPage(PageJournal* journal);

    WorkspacesViewControllerDelegate* delegate = nullptr;

    QWidget* view() override { return pageView(); }
    void setDelegate(WorkspacesViewControllerDelegate* d) override { delegate = d; }
    void updateWorkspaces(const VLRWorkspaceList& workspaces) override;
    void updateState() override { note(QStringLiteral("updateState")); }
};

class RecordingFileDropPage : public FileDropPage, public RecordingPage
{
public:
    explicit RecordingFileDropPage(PageJournal* journal);

    FileDropViewControllerDelegate* delegate = nullptr;
    QStringList files;

    QWidget* view() override { return pageView(); }
    void setDelegate(FileDropViewControllerDelegate* d) override { delegate = d; }
    void updateWorkspaces(const VLRWorkspaceList& workspaces) override;
    void updateState() override { note(QStringLiteral("updateState")); }
    void updateFiles(const QStringList& list) override;
    void selectWorkspace(const VLRWorkspacePtr& workspace) override;
    void clearFields() override { note(QStringLiteral("clearFields")); }
    void refreshButtonState() override { note(QStringLiteral("refreshButtonState")); }
};

class RecordingMarketplacePage : public MarketplacePage, public RecordingPage
{
public:
    explicit RecordingMarketplacePage(PageJournal* journal);

    MarketplaceViewControllerDelegate* delegate = nullptr;

    QWidget* view() override { return pageView(); }
    void setDelegate(MarketplaceViewControllerDelegate* d) override { delegate = d; }
    void updateInstallers(const VLRInstallerList& list) override;
    void updateInstallerUpdates(const VLRInstallerList& list) override;
    void updateNewInstallers(const VLRInstallerList& list) override;
    void updateNotInstalled(const VLRInstallerList& list) override;
    void updatePurchases(const VLRPurchaseList& list) override;
    void setLoggedIn(bool loggedIn) override;
    void updateState() override { note(QStringLiteral("updateState")); }
    void showUpdatesTab() override { note(QStringLiteral("showUpdatesTab")); }
    void downloadAndInstallInstallerWithID(const QString& identifier) override;
};

class RecordingPreferencesPage : public PreferencesPage, public RecordingPage
{
public:
    explicit RecordingPreferencesPage(PageJournal* journal);

    PreferencesViewControllerDelegate* delegate = nullptr;
    VLRUserPtr user;

    QWidget* view() override { return pageView(); }
    void setDelegate(PreferencesViewControllerDelegate* d) override { delegate = d; }
    void updateWithUser(const VLRUserPtr& u) override;
    void setLoggedIn(bool loggedIn) override;
    void updateDownloadCacheSize(qint64 bytes) override;
};

class RecordingLoginPage : public LoginPage, public RecordingPage
{
public:
    explicit RecordingLoginPage(PageJournal* journal);

    LoginViewControllerDelegate* delegate = nullptr;

    QWidget* view() override { return pageView(); }
    void setDelegate(LoginViewControllerDelegate* d) override { delegate = d; }
    void clearPassword() override { note(QStringLiteral("clearPassword")); }
    void defaultSignIn() override { note(QStringLiteral("defaultSignIn")); }
};

class RecordingLoginMfaPage : public LoginMfaPage, public RecordingPage
{
public:
    explicit RecordingLoginMfaPage(PageJournal* journal);

    LoginMfaViewControllerDelegate* delegate = nullptr;
    VLRLoginVerifierPtr verifier;

    QWidget* view() override { return pageView(); }
    void setDelegate(LoginMfaViewControllerDelegate* d) override { delegate = d; }
    void setLoginVerifier(const VLRLoginVerifierPtr& v) override;
};

class RecordingApplication : public ApplicationRoot
{
public:
    explicit RecordingApplication(PageJournal* journal) : m_journal(journal) {}

    StatusItemImageView* statusView = nullptr;
    bool launchesAtStartup = false;

    StatusItemImageView* statusItemView() override { return statusView; }
    void checkForSoftwareUpdates() override { m_journal->add(QStringLiteral("app.checkForSoftwareUpdates")); }
    bool willLaunchAppAtStartup() override { return launchesAtStartup; }
    bool launchAppAtStartup(bool launch) override;
    void terminate() override { m_journal->add(QStringLiteral("app.terminate")); }

private:
    PageJournal* m_journal;
};

// Every part at once, with raw pointers kept for the test after the parts
// have been handed to the controller.
struct RecordingParts
{
    explicit RecordingParts(PageJournal* journal);

    MainViewControllerParts take();

    RecordingPopover* popover;
    RecordingTabBar* tabs;
    RecordingLoginPage* login;
    RecordingLoginMfaPage* loginMfa;
    RecordingTransfersPage* transfers;
    RecordingWorkspacesPage* workspaces;
    RecordingFileDropPage* fileDrop;
    RecordingMarketplacePage* marketplace;
    RecordingPreferencesPage* preferences;

private:
    MainViewControllerParts m_parts;
};
