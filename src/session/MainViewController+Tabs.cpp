// Which tabs exist, which may be selected, and what a selection does.

#include "session/MainViewController.h"

#include "app/AppFlavor.h"
#include "app/VLRTab.h"
#include "service/VLRUserSession.h"

void MainViewController::selectTab(int tab)
{
    if (m_parts.tabSelectorViewController)
        m_parts.tabSelectorViewController->selectTab(tab);
}

bool MainViewController::tabSelectorViewControllerTabSupported(TabBar*, int tab)
{
    if (tab == VLRTab::Marketplace)
        return m_marketplaceTabShown;
    if (tab == VLRTab::Preferences)
        return m_settingsTabShown;
    return true;
}

bool MainViewController::tabSelectorViewControllerShouldSelectTab(TabBar*, int tab)
{
    if (m_userSession || tab == VLRTab::Login || tab == VLRTab::Preferences)
        return true;
    showLoginTab();
    return false;
}

void MainViewController::tabSelectorViewControllerDidSelectTab(TabBar*, int tab)
{
    if (m_tabView)
        m_tabView->setCurrentIndex(tab);
}

void MainViewController::tabSelectorViewControllerDidReceiveDroppedFiles(TabBar*, const QStringList& files)
{
    showFileDropTabWithFiles(files);
}

void MainViewController::showHideMarketplaceTab(const VLRUserSessionPtr& session)
{
    const bool wanted = session && (session->hasPurchases() || !session->purchases().isEmpty())
        && AppFlavor::supportsTabType(VLRTab::Marketplace);
    if (wanted == m_marketplaceTabShown)
        return;
    m_marketplaceTabShown = wanted;
    if (m_parts.tabSelectorViewController)
        m_parts.tabSelectorViewController->enableDisableTabs();
}

void MainViewController::showHideSettingsTab()
{
    // Once available the settings tab stays so, signed in or not.
    if (!AppFlavor::supportsTabType(VLRTab::Preferences) || m_settingsTabShown)
        return;
    m_settingsTabShown = true;
    if (m_parts.tabSelectorViewController)
        m_parts.tabSelectorViewController->enableDisableTabs();
}

void MainViewController::showLoginTab()
{
    selectTab(VLRTab::Login);
    if (!m_tabView)
        return;
    for (int i = 0; i < m_tabView->count(); ++i)
        if (m_tabView->widget(i)->objectName() == QLatin1String("login"))
            m_tabView->setCurrentIndex(i);
}

void MainViewController::showFileDropTabWithFiles(const QStringList& files)
{
    if (m_parts.fileDropViewController)
        m_parts.fileDropViewController->updateFiles(files);
    selectTab(VLRTab::FileDrop);
}

void MainViewController::marketplaceViewControllerDidChangeUpdateCountTo(MarketplacePage*, qint64 count, bool isWarning)
{
    if (m_parts.tabSelectorViewController)
        m_parts.tabSelectorViewController->setBadgeValue(count, VLRTab::Marketplace, isWarning);
}

void MainViewController::workspaceViewControllerCreateWorkspaceClicked()
{
    selectTab(VLRTab::FileDrop);
}
