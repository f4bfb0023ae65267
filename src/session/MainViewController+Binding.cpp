// Binding and unbinding of the one session, and every path that ends one.

#include "session/MainViewController.h"

#include "app/AppFlavor.h"
#include "app/VLRTab.h"
#include "app/VLRText.h"
#include "app/VLRUserNotificationKeys.h"
#include "platform/VLRDesktopServices.h"
#include "platform/VLRNotificationScheduling.h"
#include "service/VLRInstallerUpdater.h"
#include "service/VLRRESTProvider.h"
#include "service/VLRServiceLibrary.h"
#include "service/VLRUser.h"
#include "service/VLRUserSession.h"
#include "service/VLRUtils.h"
#include "session/ApplicationRoot.h"
#include "session/MainViewController+Observations.h"
#include "session/SessionLog.h"
#include "widgets/LocalPageWindow.h"

using namespace MainViewControllerObservations;

namespace {

// The public site's help page, for when the library knows none.
const QUrl FallbackHelpURL(QStringLiteral("https://www.veluria.com/help-center"));

} // namespace

void MainViewController::sessionDidChange(const VLRUserSessionPtr& session)
{
    if (m_userSession)
        removeSessionObservers(m_userSession);

    if (session) {
        m_userSession = session;
        session->sortWorkspaces(VLRUserSession::NewestFirstSortOrder);
        addSessionObservers(session);
    } else {
        showLoginTab();
        m_userSession = nullptr;
    }

    m_services.library->restProvider().sessionDidChange(session);

    const VLRWorkspaceList workspaces = session ? session->workspaces() : VLRWorkspaceList();
    if (m_parts.workspacesViewController)
        m_parts.workspacesViewController->updateWorkspaces(workspaces);
    if (m_parts.fileDropViewController)
        m_parts.fileDropViewController->updateWorkspaces(workspaces);
    if (m_parts.marketplaceViewController) {
        const VLRInstallerUpdaterPtr updater = session ? session->updater() : nullptr;
        m_parts.marketplaceViewController->updateNotInstalled(updater ? updater->notInstalled() : VLRInstallerList());
        m_parts.marketplaceViewController->updateNewInstallers(updater ? updater->neverInstalled()
                                                                       : VLRInstallerList());
        m_parts.marketplaceViewController->updateInstallerUpdates(updater ? updater->installerUpdates()
                                                                          : VLRInstallerList());
        m_parts.marketplaceViewController->updateInstallers(session ? session->installers() : VLRInstallerList());
        m_parts.marketplaceViewController->updatePurchases(session ? session->purchases() : VLRPurchaseList());
        m_parts.marketplaceViewController->setLoggedIn(bool(session));
    }
    if (m_parts.preferencesViewController) {
        m_parts.preferencesViewController->updateWithUser(session ? session->user() : nullptr);
        m_parts.preferencesViewController->setLoggedIn(bool(session));
    }

    if (m_userSession) {
        QPointer<MainViewController> self(this);
        m_userSession->getDownloadCacheSizeWithCompletionHandler([self](qint64 bytes, const vlr::OptionalError& error) {
            if (self && !error && self->m_parts.preferencesViewController)
                self->m_parts.preferencesViewController->updateDownloadCacheSize(bytes);
        });
    }

    updateStatusIndication(session);
    showHideMarketplaceTab(session);
    showHideSettingsTab();
    updateStateOfPages(true);

    if (session) {
        if (session->hasPurchases() && !session->hasWorkspaces() && m_parts.marketplaceViewController)
            m_parts.marketplaceViewController->showUpdatesTab();
        selectTab(AppFlavor::initialTab(session->hasPurchases(), session->hasWorkspaces()));
        if (!m_autoSignInURL.isNull()) {
            const QString url = m_autoSignInURL;
            m_autoSignInURL = QString();
            downloadUrl(url);
        }
    }
}

void MainViewController::addSessionObservers(const VLRUserSessionPtr& session)
{
    for (const Observation& o : registrationOrder)
        if (VLRObject* target = targetObject(o.target, session))
            target->addObserver(this, QString(o.keyPath), o.options, o.context);
}

void MainViewController::removeSessionObservers(const VLRUserSessionPtr& session)
{
    for (const Observation& o : removalOrder)
        if (VLRObject* target = targetObject(o.target, session))
            target->removeObserver(this, QString(o.keyPath), o.context);
}

void MainViewController::didLoginWithSession(const VLRUserSessionPtr& session)
{
    didLoginWithSession(session, false);
}

void MainViewController::didLoginWithSession(const VLRUserSessionPtr& session, bool)
{
    // Whether the sign-in ran without the view plays no part here.
    qCDebug(lcSession) << (session ? "Session bound" : "Session unbound");
    if (session)
        session->setDelegate(this);
    sessionDidChange(session);
}

void MainViewController::loginWithVerifier(const VLRLoginVerifierPtr& verifier)
{
    qCDebug(lcSession, "A second factor is asked for");
    if (m_parts.loginMfaViewController)
        m_parts.loginMfaViewController->setLoginVerifier(verifier);
    selectTab(VLRTab::Login);
    if (m_tabView)
        m_tabView->setCurrentIndex(VLRTab::SecondFactor);
}

void MainViewController::cancelMfa(LoginMfaPage*)
{
    sessionDidChange(nullptr);
}

void MainViewController::applicationWillTerminate()
{
    if (m_userSession)
        m_userSession->logoutWithCompletionHandler(nullptr);
}

void MainViewController::logOutThen(const std::function<void()>& afterUnbinding)
{
    QPointer<MainViewController> self(this);
    m_userSession->logoutWithCompletionHandler([self, afterUnbinding](const vlr::OptionalError& error) {
        if (!self)
            return;
        // A refusal (the library updates the client's software) leaves the
        // session bound; the user may try again.
        if (error) {
            self->m_services.notifications->vlr_scheduledNotificationWithTitle(
                vlr::localized("Veluria is busy updating software...please stand by"), error->localizedDescription,
                QString(), VLRUserNotificationTypeErrorLoggingOut);
            return;
        }
        self->sessionDidChange(nullptr);
        self->updateStatusIndication(nullptr);
        afterUnbinding();
    });
}

void MainViewController::signOut()
{
    if (!m_userSession)
        return;
    logOutThen([this] {
        if (m_parts.loginViewController)
            m_parts.loginViewController->clearPassword();
        if (m_parts.fileDropViewController)
            m_parts.fileDropViewController->clearFields();
        if (m_parts.preferencesViewController)
            m_parts.preferencesViewController->updateWithUser(nullptr);
    });
}

void MainViewController::quit()
{
    if (!m_userSession) {
        if (m_application)
            m_application->terminate();
        return;
    }
    logOutThen([this] {
        if (m_application)
            m_application->terminate();
    });
}

void MainViewController::openHelp()
{
    // The local service's help is a page on this computer: it is shown in
    // the client, never handed to another program by its path.
    QPointer<MainViewController> self(this);
    m_services.library->utils().getHelpURLWithCompletionHandler([self](const QUrl& url, const vlr::OptionalError&) {
        if (self)
            LocalPageWindow::openURL(url.isEmpty() ? FallbackHelpURL : url, self->m_services.desktop,
                                     self->m_helpWindow);
    });
}

void MainViewController::passwordChanged()
{
    const QString email = m_userSession && m_userSession->user() ? m_userSession->user()->email() : QString();
    m_services.notifications->vlr_scheduledNotificationWithTitle(
        vlr::localized("Your password has changed!"),
        vlr::format(vlr::localized("The password for user \"%@\" has changed. Please sign in again."), email),
        QString(), VLRUserNotificationTypePasswordChanged);
    signOut();
}

void MainViewController::downstreamProxyUnavailable()
{
    m_services.notifications->vlr_scheduledNotificationWithTitle(
        vlr::localized("Communication error"),
        vlr::localized("Veluria encountered a communication error. Please sign in again."));
    signOut();
}

void MainViewController::currentVersionIsUnsupported()
{
    signOut();
    if (m_application)
        m_application->checkForSoftwareUpdates();
}

void MainViewController::clientKeyExpired()
{
    if (!m_userSession)
        return;
    // Unlike a sign-out this keeps the stored password, so that the silent
    // sign-in brings the user back without a word; a refusal is not shown.
    QPointer<MainViewController> self(this);
    m_userSession->logoutWithCompletionHandler([self](const vlr::OptionalError& error) {
        if (!self || error)
            return;
        self->sessionDidChange(nullptr);
        if (self->m_parts.loginViewController)
            self->m_parts.loginViewController->defaultSignIn();
    });
}
