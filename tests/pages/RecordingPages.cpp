#include "pages/RecordingPages.h"

#include "service/VLRTransferReporting.h"
#include "service/VLRUser.h"
#include "service/VLRWorkspace.h"
#include "session/TabSelectorViewControllerDelegate.h"

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
{ }

RecordingPage::~RecordingPage()
{
    delete m_view;
}

QString RecordingPage::text(const VLRUserPtr& user)
{
    return user ? user->email() : QStringLiteral("nil");
}

QString RecordingPage::text(const VLRWorkspacePtr& workspace)
{
    return workspace ? workspace->identifier() : QStringLiteral("nil");
}

QWidget* RecordingPage::pageView()
{
    if (!m_view) {
        m_view = new QWidget();
        m_view->setObjectName(m_name);
    }
    return m_view;
}

void RecordingTabBar::selectTab(int tab)
{
    note("selectTab", tab);
    if (delegate && !delegate->tabSelectorViewControllerShouldSelectTab(this, tab))
        return;
    selected = tab;
    if (delegate)
        delegate->tabSelectorViewControllerDidSelectTab(this, tab);
}

bool RecordingApplication::launchAppAtStartup(bool launch)
{
    m_journal->add(QStringLiteral("app.launchAppAtStartup ")
                   + (launch ? QStringLiteral("true") : QStringLiteral("false")));
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
