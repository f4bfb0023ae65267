// Where an activated notification leads, and the announcing of new
// publications in a workspace.

#include "session/MainViewController.h"

#include "app/AppFlavor.h"
#include "app/VLRText.h"
#include "app/VLRUserNotificationKeys.h"
#include "platform/VLRDesktopServices.h"
#include "platform/VLRFileManager.h"
#include "platform/VLRNotificationScheduling.h"
#include "service/VLRPublication.h"
#include "service/VLRUserSession.h"
#include "service/VLRWorkspace.h"

bool MainViewController::userNotificationCenterShouldPresentNotification(VLRUserNotificationCenter*,
                                                                         const VLRUserNotificationPtr&)
{
    return true;
}

void MainViewController::userNotificationCenterDidActivateNotification(VLRUserNotificationCenter*,
                                                                       const VLRUserNotificationPtr& notification)
{
    if (!notification)
        return;
    const QVariantMap& userInfo = notification->userInfo();
    const QString type = userInfo.value(VLRUserNotificationTypeKey).toString();
    const QString objectId = userInfo.value(VLRUserNotificationObjectIdentifierKey).toString();
    const int activation = notification->activationType();

    if (type == VLRUserNotificationTypeTransferFailed) {
        if (activation == VLRUserNotificationActivationTypeContentsClicked)
            showTransfersTab(TransfersPage::CompletedList, objectId);
    } else if (type == VLRUserNotificationTypePasswordChanged) {
        openPopoverIfClosed();
    } else if (type == VLRUserNotificationTypeDownloadCompleted) {
        const QString path = userInfo.value(VLRUserNotificationFilePathKey).toString();
        if (!path.isEmpty() && VLRFileManager::fileExistsAtPath(path))
            if (VLRDesktopServices* desktop = m_services.desktop)
                desktop->openFile(path);
    } else if (type == VLRUserNotificationTypeUpdateAvailable
               && activation == VLRUserNotificationActivationTypeActionButtonClicked) {
        if (m_parts.marketplaceViewController)
            m_parts.marketplaceViewController->downloadAndInstallInstallerWithID(objectId);
    } else if (type == VLRUserNotificationTypeUpdateAvailable
               && activation == VLRUserNotificationActivationTypeContentsClicked) {
        showUpdates();
    } else if (type == VLRUserNotificationTypeCCAboutToExpire || type == VLRUserNotificationTypeCCExpired) {
        // Only a web page of the service is opened from here, never a file.
        const QUrl url(objectId);
        if (VLRDesktopServices* desktop = m_services.desktop;
            desktop && (url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http")))
            desktop->openURL(url);
    } else if (type == VLRUserNotificationTypeNewPublication) {
        if (m_userSession)
            if (const VLRWorkspacePtr workspace = m_userSession->workspaceFromID(objectId))
                workspace->openInBrowser(AppFlavor::defaultWorkspaceURLIsAssets());
    }
}

void MainViewController::workspace(const VLRWorkspacePtr& workspace, const VLRPublicationList& hasNewPublications)
{
    if (!workspace)
        return;
    for (const VLRPublicationPtr& publication : hasNewPublications) {
        if (!publication || (m_userSession && publication->userID() == m_userSession->userID()))
            continue;
        const QString person =
            !publication->userFirstName().isEmpty() ? publication->userFirstName() : publication->userEmail();
        if (person.isNull())
            continue;
        // These texts go out as they stand, in every language.
        QString text;
        if (!publication->projectName().isEmpty() && !publication->text().isEmpty())
            text = vlr::format(QStringLiteral("%@ uploaded %@ and commented: %@"), person, publication->projectName(),
                               publication->text());
        else if (!publication->projectName().isEmpty())
            text = vlr::format(QStringLiteral("%@ uploaded %@."), person, publication->projectName());
        else
            text = vlr::format(QStringLiteral("%@: %@"), person, publication->text());
        m_services.notifications->vlr_scheduledNotificationWithTitle(
            vlr::format(QStringLiteral("New message in %@"), workspace->name()), text, workspace->identifier(),
            VLRUserNotificationTypeNewPublication);
    }
}
