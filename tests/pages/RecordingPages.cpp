#include "pages/RecordingPages.h"

#include "service/VLRTransferReporting.h"
#include "service/VLRUser.h"
#include "service/VLRWorkspace.h"
#include "session/TabSelectorViewControllerDelegate.h"

namespace {

QString yesNo(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

template <typename List>
QString countOf(const List& list)
{
    return QString::number(list.size());
}

} // namespace

QStringList PageJournal::withPrefix(const QString& prefix) const
{
    QStringList matching;
    for (const QString& entry : entries)
        if (entry.startsWith(prefix))
            matching.append(entry);
    return matching;
}

RecordingPage::RecordingPage(PageJournal* journal, const QString& name)
    : m_journal(journal)
    , m_name(name)
{
}

RecordingPage::~RecordingPage()
{
    delete m_view;
}

QWidget* RecordingPage::pageView()
{
    if (!m_view) {
        m_view = new QWidget();
        m_view->setObjectName(m_name);
    }
    return m_view;
}

void RecordingPage::note(const QString& operation, const QString& argument)
{
    m_journal->add(m_name + QLatin1Char('.') + operation + (argument.isNull() ? QString() : QLatin1Char(' ') + argument));
}

RecordingTabBar::RecordingTabBar(PageJournal* journal)
    : RecordingPage(journal, QStringLiteral("tabs"))
{
}

void RecordingTabBar::selectTab(int tab)
{
    note(QStringLiteral("selectTab"), QString::number(tab));
    if (delegate && !delegate->tabSelectorViewControllerShouldSelectTab(this, tab))
        return;
    selected = tab;
    if (delegate)
        delegate->tabSelectorViewControllerDidSelectTab(this, tab);
}

void RecordingTabBar::showActiveUploads(bool uploads, bool downloads)
{
    activeUploads = uploads;
    activeDownloads = downloads;
    note(QStringLiteral("showActiveUploads"), yesNo(uploads) + QLatin1Char(' ') + yesNo(downloads));
}

void RecordingTabBar::setBadgeValue(qint64 value, int forTab, bool isWarning)
{
    badges[forTab] = {value, isWarning};
    note(QStringLiteral("setBadgeValue"), QStringLiteral("%1 %2 %3").arg(value).arg(forTab).arg(yesNo(isWarning)));
}

void RecordingTabBar::enableDisableTabs()
{
    note(QStringLiteral("enableDisableTabs"));
}

RecordingPopover::RecordingPopover(PageJournal* journal)
    : RecordingPage(journal, QStringLiteral("popover"))
{
}

void RecordingPopover::performClose()
{
    shown = false;
    note(QStringLiteral("performClose"));
}

void RecordingPopover::showRelativeToRect(const QRect& rect, QWidget*, int preferredEdge)
{
    shown = true;
    lastRect = rect;
    note(QStringLiteral("show"), QString::number(preferredEdge));
}

RecordingTransfersPage::RecordingTransfersPage(PageJournal* journal)
    : RecordingPage(journal, QStringLiteral("transfers"))
{
}

void RecordingTransfersPage::setUploads(const VLRTransferList& list)
{
    uploads = list;
    note(QStringLiteral("setUploads"), countOf(list));
}

void RecordingTransfersPage::setDownloads(const VLRTransferList& list)
{
    downloads = list;
    note(QStringLiteral("setDownloads"), countOf(list));
}

void RecordingTransfersPage::setCompleted(const VLRTransferList& list)
{
    completed = list;
    note(QStringLiteral("setCompleted"), countOf(list));
}

void RecordingTransfersPage::setTransfersPaused(bool paused)
{
    note(QStringLiteral("setTransfersPaused"), yesNo(paused));
}

void RecordingTransfersPage::updateUploadThroughput(double value)
{
    note(QStringLiteral("updateUploadThroughput"), QString::number(value));
}

void RecordingTransfersPage::updateDownloadThroughput(double value)
{
    note(QStringLiteral("updateDownloadThroughput"), QString::number(value));
}

void RecordingTransfersPage::updateUploadTimeRemaining(double seconds, bool isValid)
{
    note(QStringLiteral("updateUploadTimeRemaining"), QString::number(seconds) + QLatin1Char(' ') + yesNo(isValid));
}

void RecordingTransfersPage::updateDownloadTimeRemaining(double seconds, bool isValid)
{
    note(QStringLiteral("updateDownloadTimeRemaining"), QString::number(seconds) + QLatin1Char(' ') + yesNo(isValid));
}

void RecordingTransfersPage::showTab(int list, const QString& andSelectTransfer)
{
    note(QStringLiteral("showTab"), QString::number(list) + QLatin1Char(' ') + andSelectTransfer);
}

RecordingWorkspacesPage::RecordingWorkspacesPage(PageJournal* journal)
    : RecordingPage(journal, QStringLiteral("workspaces"))
{
}

void RecordingWorkspacesPage::updateWorkspaces(const VLRWorkspaceList& workspaces)
{
    note(QStringLiteral("updateWorkspaces"), countOf(workspaces));
}

RecordingFileDropPage::RecordingFileDropPage(PageJournal* journal)
    : RecordingPage(journal, QStringLiteral("fileDrop"))
{
}

void RecordingFileDropPage::updateWorkspaces(const VLRWorkspaceList& workspaces)
{
    note(QStringLiteral("updateWorkspaces"), countOf(workspaces));
}

void RecordingFileDropPage::updateFiles(const QStringList& list)
{
    files = list;
    note(QStringLiteral("updateFiles"), list.join(QLatin1Char(',')));
}

void RecordingFileDropPage::selectWorkspace(const VLRWorkspacePtr& workspace)
{
    note(QStringLiteral("selectWorkspace"), workspace ? workspace->identifier() : QStringLiteral("nil"));
}

RecordingMarketplacePage::RecordingMarketplacePage(PageJournal* journal)
    : RecordingPage(journal, QStringLiteral("marketplace"))
{
}

void RecordingMarketplacePage::updateInstallers(const VLRInstallerList& list)
{
    note(QStringLiteral("updateInstallers"), countOf(list));
}

void RecordingMarketplacePage::updateInstallerUpdates(const VLRInstallerList& list)
{
    note(QStringLiteral("updateInstallerUpdates"), countOf(list));
}

void RecordingMarketplacePage::updateNewInstallers(const VLRInstallerList& list)
{
    note(QStringLiteral("updateNewInstallers"), countOf(list));
}

void RecordingMarketplacePage::updateNotInstalled(const VLRInstallerList& list)
{
    note(QStringLiteral("updateNotInstalled"), countOf(list));
}

void RecordingMarketplacePage::updatePurchases(const VLRPurchaseList& list)
{
    note(QStringLiteral("updatePurchases"), countOf(list));
}

void RecordingMarketplacePage::setLoggedIn(bool loggedIn)
{
    note(QStringLiteral("setLoggedIn"), yesNo(loggedIn));
}

void RecordingMarketplacePage::downloadAndInstallInstallerWithID(const QString& identifier)
{
    note(QStringLiteral("downloadAndInstallInstallerWithID"), identifier);
}

RecordingPreferencesPage::RecordingPreferencesPage(PageJournal* journal)
    : RecordingPage(journal, QStringLiteral("preferences"))
{
}

void RecordingPreferencesPage::updateWithUser(const VLRUserPtr& u)
{
    user = u;
    note(QStringLiteral("updateWithUser"), u ? u->email() : QStringLiteral("nil"));
}

void RecordingPreferencesPage::setLoggedIn(bool loggedIn)
{
    note(QStringLiteral("setLoggedIn"), yesNo(loggedIn));
}

void RecordingPreferencesPage::updateDownloadCacheSize(qint64 bytes)
{
    note(QStringLiteral("updateDownloadCacheSize"), QString::number(bytes));
}

RecordingLoginPage::RecordingLoginPage(PageJournal* journal)
    : RecordingPage(journal, QStringLiteral("login"))
{
}

RecordingLoginMfaPage::RecordingLoginMfaPage(PageJournal* journal)
    : RecordingPage(journal, QStringLiteral("loginMfa"))
{
}

void RecordingLoginMfaPage::setLoginVerifier(const VLRLoginVerifierPtr& v)
{
    verifier = v;
    note(QStringLiteral("setLoginVerifier"));
}

bool RecordingApplication::launchAppAtStartup(bool launch)
{
    m_journal->add(QStringLiteral("app.launchAppAtStartup ") + yesNo(launch));
    launchesAtStartup = launch;
    return true;
}

RecordingParts::RecordingParts(PageJournal* journal)
{
    popover = new RecordingPopover(journal);
    tabs = new RecordingTabBar(journal);
    login = new RecordingLoginPage(journal);
    loginMfa = new RecordingLoginMfaPage(journal);
    transfers = new RecordingTransfersPage(journal);
    workspaces = new RecordingWorkspacesPage(journal);
    fileDrop = new RecordingFileDropPage(journal);
    marketplace = new RecordingMarketplacePage(journal);
    preferences = new RecordingPreferencesPage(journal);
    m_parts.popover.reset(popover);
    m_parts.tabSelectorViewController.reset(tabs);
    m_parts.loginViewController.reset(login);
    m_parts.loginMfaViewController.reset(loginMfa);
    m_parts.transfersViewController.reset(transfers);
    m_parts.workspacesViewController.reset(workspaces);
    m_parts.fileDropViewController.reset(fileDrop);
    m_parts.marketplaceViewController.reset(marketplace);
    m_parts.preferencesViewController.reset(preferences);
}

MainViewControllerParts RecordingParts::take()
{
    return std::move(m_parts);
}
