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
    // Writes "name.operation argument argument ...": flags as true/false,
    // lists as their size, file lists joined by commas, users by e-mail.
    template <typename... Arguments> void note(const char* operation, const Arguments&... arguments)
    {
        QString entry = m_name + QLatin1Char('.') + QLatin1String(operation);
        ((entry += QLatin1Char(' ') + text(arguments)), ...);
        m_journal->add(entry);
    }
    static QString text(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }
    static QString text(int value) { return QString::number(value); }
    static QString text(qint64 value) { return QString::number(value); }
    static QString text(double value) { return QString::number(value); }
    static QString text(const QString& value) { return value; }
    static QString text(const QStringList& value) { return value.join(QLatin1Char(',')); }
    static QString text(const VLRUserPtr& user);
    static QString text(const VLRWorkspacePtr& workspace);
    template <typename T> static QString text(const QList<T>& list) { return QString::number(list.size()); }

    PageJournal* m_journal;
    QString m_name;
    QPointer<QWidget> m_view;
};

class RecordingTabBar : public TabBar, public RecordingPage
{
public:
    explicit RecordingTabBar(PageJournal* journal)
        : RecordingPage(journal, QStringLiteral("tabs"))
    { }

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
    void showActiveUploads(bool uploads, bool downloads) override
    {
        activeUploads = uploads;
        activeDownloads = downloads;
        note(__func__, uploads, downloads);
    }
    void setBadgeValue(qint64 value, int forTab, bool isWarning) override
    {
        badges[forTab] = {value, isWarning};
        note(__func__, value, forTab, isWarning);
    }
    void enableDisableTabs() override { note(__func__); }
};

class RecordingPopover : public Popover, public RecordingPage
{
public:
    explicit RecordingPopover(PageJournal* journal)
        : RecordingPage(journal, QStringLiteral("popover"))
    { }

    bool shown = false;
    QRect lastRect;

    bool isShown() const override { return shown; }
    void performClose() override
    {
        shown = false;
        note(__func__);
    }
    void showRelativeToRect(const QRect& rect, QWidget*, int preferredEdge) override
    {
        shown = true;
        lastRect = rect;
        note("show", preferredEdge);
    }
    void setContentView(QWidget*) override { note(__func__); }
    QWidget* window() override { return pageView(); }
};

class RecordingTransfersPage : public TransfersPage, public RecordingPage
{
public:
    explicit RecordingTransfersPage(PageJournal* journal)
        : RecordingPage(journal, QStringLiteral("transfers"))
    { }

    TransfersViewControllerDelegate* delegate = nullptr;
    VLRTransferList uploads, downloads, completed;

    QWidget* view() override { return pageView(); }
    void setDelegate(TransfersViewControllerDelegate* d) override { delegate = d; }
    void setUploads(const VLRTransferList& list) override
    {
        uploads = list;
        note(__func__, list);
    }
    void setDownloads(const VLRTransferList& list) override
    {
        downloads = list;
        note(__func__, list);
    }
    void setCompleted(const VLRTransferList& list) override
    {
        completed = list;
        note(__func__, list);
    }
    void setTransfersPaused(bool paused) override { note(__func__, paused); }
    void updateUploadThroughput(double value) override { note(__func__, value); }
    void updateDownloadThroughput(double value) override { note(__func__, value); }
    void updateUploadTimeRemaining(double seconds, bool isValid) override { note(__func__, seconds, isValid); }
    void updateDownloadTimeRemaining(double seconds, bool isValid) override { note(__func__, seconds, isValid); }
    void updateState() override { note(__func__); }
    void showTab(int list, const QString& andSelectTransfer) override { note(__func__, list, andSelectTransfer); }
};

class RecordingWorkspacesPage : public WorkspacesPage, public RecordingPage
{
public:
    explicit RecordingWorkspacesPage(PageJournal* journal)
        : RecordingPage(journal, QStringLiteral("workspaces"))
    { }

    WorkspacesViewControllerDelegate* delegate = nullptr;

    QWidget* view() override { return pageView(); }
    void setDelegate(WorkspacesViewControllerDelegate* d) override { delegate = d; }
    void updateWorkspaces(const VLRWorkspaceList& workspaces) override { note(__func__, workspaces); }
    void updateState() override { note(__func__); }
};

class RecordingFileDropPage : public FileDropPage, public RecordingPage
{
public:
    explicit RecordingFileDropPage(PageJournal* journal)
        : RecordingPage(journal, QStringLiteral("fileDrop"))
    { }

    FileDropViewControllerDelegate* delegate = nullptr;
    QStringList files;

    QWidget* view() override { return pageView(); }
    void setDelegate(FileDropViewControllerDelegate* d) override { delegate = d; }
    void updateWorkspaces(const VLRWorkspaceList& workspaces) override { note(__func__, workspaces); }
    void updateState() override { note(__func__); }
    void updateFiles(const QStringList& list) override
    {
        files = list;
        note(__func__, list);
    }
    void selectWorkspace(const VLRWorkspacePtr& workspace) override { note(__func__, workspace); }
    void clearFields() override { note(__func__); }
    void refreshButtonState() override { note(__func__); }
};

class RecordingMarketplacePage : public MarketplacePage, public RecordingPage
{
public:
    explicit RecordingMarketplacePage(PageJournal* journal)
        : RecordingPage(journal, QStringLiteral("marketplace"))
    { }

    MarketplaceViewControllerDelegate* delegate = nullptr;

    QWidget* view() override { return pageView(); }
    void setDelegate(MarketplaceViewControllerDelegate* d) override { delegate = d; }
    void updateInstallers(const VLRInstallerList& list) override { note(__func__, list); }
    void updateInstallerUpdates(const VLRInstallerList& list) override { note(__func__, list); }
    void updateNewInstallers(const VLRInstallerList& list) override { note(__func__, list); }
    void updateNotInstalled(const VLRInstallerList& list) override { note(__func__, list); }
    void updatePurchases(const VLRPurchaseList& list) override { note(__func__, list); }
    void setLoggedIn(bool loggedIn) override { note(__func__, loggedIn); }
    void updateState() override { note(__func__); }
    void showUpdatesTab() override { note(__func__); }
    void downloadAndInstallInstallerWithID(const QString& identifier) override { note(__func__, identifier); }
};

class RecordingPreferencesPage : public PreferencesPage, public RecordingPage
{
public:
    explicit RecordingPreferencesPage(PageJournal* journal)
        : RecordingPage(journal, QStringLiteral("preferences"))
    { }

    PreferencesViewControllerDelegate* delegate = nullptr;
    VLRUserPtr user;

    QWidget* view() override { return pageView(); }
    void setDelegate(PreferencesViewControllerDelegate* d) override { delegate = d; }
    void updateWithUser(const VLRUserPtr& u) override
    {
        user = u;
        note(__func__, u);
    }
    void setLoggedIn(bool loggedIn) override { note(__func__, loggedIn); }
    void updateDownloadCacheSize(qint64 bytes) override { note(__func__, bytes); }
};

class RecordingLoginPage : public LoginPage, public RecordingPage
{
public:
    explicit RecordingLoginPage(PageJournal* journal)
        : RecordingPage(journal, QStringLiteral("login"))
    { }

    LoginViewControllerDelegate* delegate = nullptr;

    QWidget* view() override { return pageView(); }
    void setDelegate(LoginViewControllerDelegate* d) override { delegate = d; }
    void clearPassword() override { note(__func__); }
    void defaultSignIn() override { note(__func__); }
};

class RecordingLoginMfaPage : public LoginMfaPage, public RecordingPage
{
public:
    explicit RecordingLoginMfaPage(PageJournal* journal)
        : RecordingPage(journal, QStringLiteral("loginMfa"))
    { }

    LoginMfaViewControllerDelegate* delegate = nullptr;
    VLRLoginVerifierPtr verifier;

    QWidget* view() override { return pageView(); }
    void setDelegate(LoginMfaViewControllerDelegate* d) override { delegate = d; }
    void setLoginVerifier(const VLRLoginVerifierPtr& v) override
    {
        verifier = v;
        note(__func__);
    }
};

class RecordingApplication : public ApplicationRoot
{
public:
    explicit RecordingApplication(PageJournal* journal)
        : m_journal(journal)
    { }

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
