#include "session/MainViewController.h"

#include "app/VLRTab.h"
#include "service/VLRRESTProvider.h"
#include "service/VLRServiceLibrary.h"
#include "service/VLRUser.h"
#include "service/VLRUserSession.h"
#include "session/ApplicationRoot.h"
#include "session/WorkspaceLocationDelegate.h"
#include "widgets/LocalPageWindow.h"
#include "widgets/StatusItemImageView.h"
#include "widgets/VLRView.h"
#include "widgets/VLRViewControllerAdditions.h"

#include <QVBoxLayout>

namespace {

constexpr int TabBarHeight = 48;
const QSize PopoverSize(360, 520);

} // namespace

MainViewController::MainViewController(MainViewControllerParts parts, ApplicationRoot* application,
                                       const ClientServices& services, QObject* parent)
    : QObject(parent)
    , m_application(application)
    , m_services(services)
    , m_parts(std::move(parts))
{ }

MainViewController::~MainViewController()
{
    sessionDidChange(nullptr);
    // The pages outlive this body by a little; nothing they do while they go
    // may reach this controller.
    setDelegateOfParts(nullptr);
    if (m_view)
        m_view->setDelegate(nullptr);
    delete m_view;
    delete m_helpWindow;
}

void MainViewController::setDelegateOfParts(MainViewController* delegate)
{
    if (m_parts.tabSelectorViewController)
        m_parts.tabSelectorViewController->setDelegate(delegate);
    if (m_parts.loginViewController)
        m_parts.loginViewController->setDelegate(delegate);
    if (m_parts.loginMfaViewController)
        m_parts.loginMfaViewController->setDelegate(delegate);
    if (m_parts.transfersViewController)
        m_parts.transfersViewController->setDelegate(delegate);
    if (m_parts.fileDropViewController)
        m_parts.fileDropViewController->setDelegate(delegate);
    if (m_parts.workspacesViewController)
        m_parts.workspacesViewController->setDelegate(delegate);
    if (m_parts.preferencesViewController)
        m_parts.preferencesViewController->setDelegate(delegate);
    if (m_parts.marketplaceViewController)
        m_parts.marketplaceViewController->setDelegate(delegate);
}

void MainViewController::loadView()
{
    // The popover's content: the tab bar's holder over the tab view, whose
    // items hold the pages in tab order, with the second factor last.
    m_view = new VLRView();
    m_view->resize(PopoverSize);
    auto* layout = new QVBoxLayout(m_view);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_tabSelectorView = new QWidget(m_view);
    m_tabSelectorView->setFixedHeight(TabBarHeight);
    m_tabView = new QStackedWidget(m_view);
    layout->addWidget(m_tabSelectorView);
    layout->addWidget(m_tabView, 1);
    for (int tab = VLRTab::Login; tab <= VLRTab::SecondFactor; ++tab) {
        auto* holder = new QWidget(m_tabView);
        if (tab == VLRTab::Login)
            holder->setObjectName(QStringLiteral("login"));
        m_tabView->addWidget(holder);
    }

    setDelegateOfParts(this);

    auto host = [](QWidget* child, QWidget* holder) {
        if (child)
            setParentView(child, holder);
    };
    if (m_parts.tabSelectorViewController)
        host(m_parts.tabSelectorViewController->view(), m_tabSelectorView);
    if (m_parts.loginViewController)
        host(m_parts.loginViewController->view(), m_tabView->widget(VLRTab::Login));
    if (m_parts.loginMfaViewController)
        host(m_parts.loginMfaViewController->view(), m_tabView->widget(VLRTab::SecondFactor));
    if (m_parts.transfersViewController)
        host(m_parts.transfersViewController->view(), m_tabView->widget(VLRTab::Transfers));
    if (m_parts.workspacesViewController)
        host(m_parts.workspacesViewController->view(), m_tabView->widget(VLRTab::Workspaces));
    if (m_parts.fileDropViewController)
        host(m_parts.fileDropViewController->view(), m_tabView->widget(VLRTab::FileDrop));
    if (m_parts.marketplaceViewController)
        host(m_parts.marketplaceViewController->view(), m_tabView->widget(VLRTab::Marketplace));
    if (m_parts.preferencesViewController)
        host(m_parts.preferencesViewController->view(), m_tabView->widget(VLRTab::Preferences));

    if (m_parts.popover)
        m_parts.popover->setContentView(m_view);

    m_view->setBackgroundColor(QColor(233, 233, 233));
    m_view->setDropTarget(true);
    m_view->setDelegate(this);

    if (m_application)
        m_statusItemImageView = m_application->statusItemView();

    // The library may hand over the session it wants the client to hold.
    QPointer<MainViewController> self(this);
    m_services.library->restProvider().setUpdateSessionBlock([self](const VLRUserSessionPtr& session) {
        if (self)
            self->sessionDidChange(session);
    });
}

QWidget* MainViewController::view() const
{
    return m_view;
}

StatusItemImageView* MainViewController::statusItemImageView() const
{
    return m_statusItemImageView;
}

bool MainViewController::transfersViewControllerEmailNeedsConfirmation()
{
    return m_userSession && m_userSession->user() && m_userSession->user()->needsConfirmation();
}

bool MainViewController::fileDropViewControllerEmailNeedsConfirmation()
{
    return transfersViewControllerEmailNeedsConfirmation();
}

bool MainViewController::workspaceViewControllerEmailNeedsConfirmation()
{
    return transfersViewControllerEmailNeedsConfirmation();
}

bool MainViewController::transfersViewControllerLoading()
{
    return m_userSession && m_userSession->syncingLists();
}

bool MainViewController::fileDropViewControllerLoading()
{
    return transfersViewControllerLoading();
}

bool MainViewController::workspaceViewControllerLoading()
{
    return transfersViewControllerLoading();
}

bool MainViewController::marketplaceViewControllerLoading()
{
    return transfersViewControllerLoading();
}

bool MainViewController::willVeluriaLaunchAtStartup()
{
    return m_application && m_application->willLaunchAppAtStartup();
}

bool MainViewController::preferencesViewControllerWantsVeluriaLaunchedAtStartup(PreferencesPage*, bool launch)
{
    return m_application && m_application->launchAppAtStartup(launch);
}

void MainViewController::preferencesViewControllerDidSetDownloadCacheSize(PreferencesPage*, qint64 bytes)
{
    if (m_userSession)
        m_userSession->setDownloadCacheSize(bytes);
}

void MainViewController::preferencesViewControllerDidModifyArchiveMode(PreferencesPage*, bool)
{
    if (m_parts.fileDropViewController)
        m_parts.fileDropViewController->refreshButtonState();
}

void MainViewController::preferencesViewControllerWantsLogIn(PreferencesPage*)
{
    showLoginTab();
}

void MainViewController::preferencesViewControllerWantsLogOut(PreferencesPage*)
{
    signOut();
}

void MainViewController::preferencesViewControllerWantsHelp(PreferencesPage*)
{
    openHelp();
}

void MainViewController::preferencesViewControllerWantsQuit(PreferencesPage*)
{
    quit();
}
