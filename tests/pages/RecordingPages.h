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

// A stand-in for a page interface with a delegate: it keeps the delegate it
// is given and shows an empty view.
template <typename Page, typename Delegate> class RecordingPageOf : public Page, public RecordingPage
{
public:
    RecordingPageOf(PageJournal* journal, const QString& name)
        : RecordingPage(journal, name)
    { }

    Delegate* delegate = nullptr;

    QWidget* view() override { return pageView(); }
    void setDelegate(Delegate* d) override { delegate = d; }
};

class RecordingTabBar : public RecordingPageOf<TabBar, TabSelectorViewControllerDelegate>
{
public:
    explicit RecordingTabBar(PageJournal* journal)
        : RecordingPageOf(journal, QStringLiteral("tabs"))
    { }
    int selected = 0;
    // The last badge each tab was given: value and warning flag.
    QMap<int, QPair<qint64, bool>> badges;
    bool activeUploads = false;
    bool activeDownloads = false;

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

class RecordingTransfersPage : public RecordingPageOf<TransfersPage, TransfersViewControllerDelegate>
{
public:
    explicit RecordingTransfersPage(PageJournal* journal)
        : RecordingPageOf(journal, QStringLiteral("transfers"))
    { }
    VLRTransferList uploads, downloads, completed;

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

class RecordingWorkspacesPage : public RecordingPageOf<WorkspacesPage, WorkspacesViewControllerDelegate>
{
public:
    explicit RecordingWorkspacesPage(PageJournal* journal)
        : RecordingPageOf(journal, QStringLiteral("workspaces"))
    { }

    void updateWorkspaces(const VLRWorkspaceList& workspaces) override { note(__func__, workspaces); }
    void updateState() override { note(__func__); }
};

class RecordingFileDropPage : public RecordingPageOf<FileDropPage, FileDropViewControllerDelegate>
{
public:
    explicit RecordingFileDropPage(PageJournal* journal)
        : RecordingPageOf(journal, QStringLiteral("fileDrop"))
    { }
    QStringList files;

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

class RecordingMarketplacePage : public RecordingPageOf<MarketplacePage, MarketplaceViewControllerDelegate>
{
public:
    explicit RecordingMarketplacePage(PageJournal* journal)
        : RecordingPageOf(journal, QStringLiteral("marketplace"))
    { }

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

class RecordingPreferencesPage : public RecordingPageOf<PreferencesPage, PreferencesViewControllerDelegate>
{
public:
    explicit RecordingPreferencesPage(PageJournal* journal)
        : RecordingPageOf(journal, QStringLiteral("preferences"))
    { }
    VLRUserPtr user;

    void updateWithUser(const VLRUserPtr& u) override
    {
        user = u;
        note(__func__, u);
    }
    void setLoggedIn(bool loggedIn) override { note(__func__, loggedIn); }
    void updateDownloadCacheSize(qint64 bytes) override { note(__func__, bytes); }
};

class RecordingLoginPage : public RecordingPageOf<LoginPage, LoginViewControllerDelegate>
{
public:
    explicit RecordingLoginPage(PageJournal* journal)
        : RecordingPageOf(journal, QStringLiteral("login"))
    { }

    void clearPassword() override { note(__func__); }
    void defaultSignIn() override { note(__func__); }
    void toggleEnvironmentPopUp() override { note(__func__); }
};

class RecordingLoginMfaPage : public RecordingPageOf<LoginMfaPage, LoginMfaViewControllerDelegate>
{
public:
    explicit RecordingLoginMfaPage(PageJournal* journal)
        : RecordingPageOf(journal, QStringLiteral("loginMfa"))
    { }
    VLRLoginVerifierPtr verifier;

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
