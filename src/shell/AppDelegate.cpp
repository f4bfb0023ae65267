#include "shell/AppDelegate.h"
#include "shell/ShellLog.h"

#include "app/AppFlavor.h"
#include "app/VLRText.h"
#include "app/VLRUserDefaultsKeys.h"
#include "app/VLRUserNotificationKeys.h"
#include "platform/HelperProgram.h"
#include "platform/VLRDesktopServices.h"
#include "platform/VLRFileManager.h"
#include "platform/VLRMainQueue.h"
#include "platform/VLRNotificationScheduling.h"
#include "platform/VLRRunningApplication.h"
#include "platform/VLRUserDefaults.h"
#include "platform/VLRUserNotificationCenter.h"
#include "service/VLREnvironment.h"
#include "service/VLRInit.h"
#include "service/VLRLogFormat.h"
#include "service/VLRReachabilityManager.h"
#include "service/VLRServiceLibrary.h"
#include "service/VLRSoftwareUpdater.h"
#include "service/VLRUtils.h"
#include "service/VLRVersionChecker.h"
#include "service/VLRVersionInfo.h"
#include "session/MainViewController.h"
#include "shell/GtkBookmarks.h"
#include "shell/VLRStatusItem.h"
#include "shell/XdgAutostart.h"
#include "update/UpdateAlertController.h"
#include "update/UpdateEULAController.h"
#include "widgets/StatusItemImageView.h"
#include "widgets/VLRApplicationAdditions.h"
#include "widgets/VLRModalSession.h"
#include "widgets/VLRWindowAdditions.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QProcess>
#include <QPropertyAnimation>
#include <QStandardPaths>
#include <QTimer>

namespace {

const QString Tag = QStringLiteral("SDKClient");
const QString RestProxyTag = QStringLiteral("RestProxy");
const QString UpdateTag = QStringLiteral("VeluriaSWUpdate");
constexpr int StatusItemSize = 24;
constexpr int FirstPopoverDelayMilliseconds = 1000;

// The platform's text for an absent object, as the log and the dialog show it.
QString describe(const QString& text)
{
    return text.isNull() ? QStringLiteral("(null)") : text;
}

// The time a window takes to glide to a new frame.
constexpr int PopoverGlideMilliseconds = 200;

} // namespace

AppDelegate::AppDelegate(const ClientServices& services, PartsFactory partsFactory, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_partsFactory(std::move(partsFactory))
{
    m_services.library->init().initUsingCrashlytics(true);
    qCInfo(lcShell).noquote() << "Veluria" << QCoreApplication::applicationVersion() << "starting";
}

AppDelegate::~AppDelegate()
{
    // Nothing may call the controller while it goes. It unbinds its session
    // while the status item still exists.
    if (m_statusItemView)
        m_statusItemView->setDelegate(nullptr);
    if (VLRUserNotificationCenter* center = m_services.notificationCenter)
        center->setDelegate(nullptr);
    vlr_setPopoverIsShownProvider(nullptr);
    m_mainViewController.reset();
    m_updateAlertController.reset();
    m_updateEULAController.reset();
    m_statusItem.reset();
    delete m_statusItemView;
}

void AppDelegate::awakeFromNib()
{
    setDefaultUserDefaults();

    m_mainViewController = std::make_unique<MainViewController>(
        m_partsFactory ? m_partsFactory(m_services) : MainViewControllerParts(), this, m_services);

    m_statusItem = std::make_unique<VLRStatusItem>();
    m_statusItemView =
        new StatusItemImageView(QRect(0, 0, StatusItemSize, StatusItemSize), AppFlavor::supportsAnimatedStatusIcon());
    m_statusItemView->setDelegate(m_mainViewController.get());
    connect(m_statusItem.get(), &VLRStatusItem::quitRequested, this, &AppDelegate::terminate);
    connect(m_statusItem.get(), &VLRStatusItem::moved, this, &AppDelegate::statusItemDidMove);
    m_statusItem->setView(m_statusItemView);
    // The status item's window may become key only while the popover shows.
    vlr_setPopoverIsShownProvider([this] {
        Popover* popover = m_mainViewController ? m_mainViewController->popover() : nullptr;
        return popover && popover->isShown();
    });

    m_mainViewController->loadView();
    qCInfo(lcShell) << "Main view loaded";
}

void AppDelegate::applicationDidFinishLaunching()
{
    m_services.library->utils().setDatabaseLocation(databaseLocation());

    VLRUserDefaults* defaults = m_services.defaults;
    if (defaults->boolForKey(VLRUserDefaultsKeyLaunchRestProxy))
        launchRestProxy();

    if (VLRUserNotificationCenter* center = m_services.notificationCenter)
        center->setDelegate(m_mainViewController.get());

    const std::optional<QVariantMap> domain = defaults->persistentDomainForName(VLRUserDefaultsPersistentDomain);
    // An empty name is a value too, and is applied as one.
    if (domain && domain->contains(VLRUserDefaultsKeyEnvironment))
        m_services.library->environment().setEnvironmentWithDomainName(
            domain->value(VLRUserDefaultsKeyEnvironment).toString());

    softwareUpdateTimer();

    if (m_launchedAsLoginItem)
        m_skipOpeningPop = true;

    VLRMainQueue::dispatchAfter(FirstPopoverDelayMilliseconds, this, [this] {
        Popover* popover = m_mainViewController ? m_mainViewController->popover() : nullptr;
        if (!m_skipOpeningPop && popover && !popover->isShown())
            m_mainViewController->togglePopover();
    });
    qCInfo(lcShell) << (m_launchedAsLoginItem ? "Launch finished (login item)" : "Launch finished");
}

int AppDelegate::applicationShouldTerminate()
{
    vlr::OptionalError error;
    if (m_services.library->softwareUpdater().canLogout(&error))
        return NSTerminateNow;
    m_services.notifications->vlr_scheduledNotificationWithTitle(
        vlr::localized("Veluria is busy updating software...please stand by"),
        error ? error->localizedDescription : QString(), QString(), VLRUserNotificationTypeErrorLoggingOut);
    return NSTerminateCancel;
}

void AppDelegate::applicationWillTerminate()
{
    qCInfo(lcShell) << "Stopping";
    if (m_mainViewController)
        m_mainViewController->applicationWillTerminate();

    VLRUserDefaults* defaults = m_services.defaults;
    for (const VLRRunningApplication& proxy :
         VLRRunningApplication::runningApplicationsWithExecutableName(RestProxyExecutableName)) {
        defaults->setBool(true, VLRUserDefaultsKeyLaunchRestProxy);
        proxy.terminate();
    }
    defaults->synchronize();

    m_services.library->init().shutdown();
}

void AppDelegate::terminate()
{
    if (applicationShouldTerminate() != NSTerminateNow)
        return;
    applicationWillTerminate();
    emit terminated();
}

void AppDelegate::downloadUrl(const QString& url)
{
    if (m_mainViewController)
        m_mainViewController->downloadUrl(url);
}

StatusItemImageView* AppDelegate::statusItemView()
{
    return m_statusItemView;
}

void AppDelegate::statusItemDidMove(const QRectF& frame)
{
    const QRectF old = m_statusItemFrame;
    m_statusItemFrame = frame;
    const QPointF delta = frame.topLeft() - old.topLeft();
    Popover* popover = m_mainViewController ? m_mainViewController->popover() : nullptr;
    QWidget* window = popover && popover->isShown() ? popover->window() : nullptr;
    if (!window)
        return;
    // The popover glides after the icon. A move during the glide adds to
    // where the glide was going.
    const bool gliding = m_popoverGlide && m_popoverGlide->state() == QAbstractAnimation::Running;
    const QPoint target = (gliding ? m_popoverGlide->endValue().toPoint() : window->pos()) + delta.toPoint();
    if (m_popoverGlide)
        m_popoverGlide->stop();
    m_popoverGlide = new QPropertyAnimation(window, "pos", this);
    m_popoverGlide->setDuration(PopoverGlideMilliseconds);
    m_popoverGlide->setStartValue(window->pos());
    m_popoverGlide->setEndValue(target);
    m_popoverGlide->start(QAbstractAnimation::DeleteWhenStopped);
}

void AppDelegate::launchRestProxy()
{
    // Cleared first: a proxy that fails to start is not tried again at the
    // next launch.
    m_services.defaults->setBool(false, VLRUserDefaultsKeyLaunchRestProxy);
    const QString executable = HelperProgram::executablePath(RestProxyExecutableName);
    if (executable.isEmpty()) {
        VLRLogFormat(4, RestProxyTag, "Bundle Identifier \"%@\" is invalid or specified app is not installed",
                     RestProxyExecutableName);
        return;
    }
    QProcess proxy;
    proxy.setProgram(executable);
    if (proxy.startDetached())
        VLRLogFormat(4, RestProxyTag, "RestProxy launched successfully!");
    else
        VLRLogFormat(4, RestProxyTag, "RestProxy could not launch. error = %@", proxy.errorString());
}

QUrl AppDelegate::databaseLocation()
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (data.isEmpty())
        return QUrl();
    return QUrl::fromLocalFile(data + QStringLiteral("/Veluria/"));
}

QString AppDelegate::userFolderPath()
{
    return QStringLiteral("%1/Veluria/").arg(QDir::homePath());
}

void AppDelegate::setDefaultUserDefaults()
{
    VLRUserDefaults* defaults = m_services.defaults;
    if (!defaults->objectForKey(VLRUserDefaultsKeyFirstLaunchDate).isValid()) {
        const QString folder = userFolderPath();
        if (!VLRFileManager::fileExistsAtPath(folder) && !VLRFileManager::createDirectoryAtPath(folder, false)) {
            // Nothing else of the first launch happens, so that the next start
            // tries it all again.
            VLRLogFormat(5, Tag, "Error: Create directory failed for: %@", folder);
            return;
        }
        GtkBookmarks::insertFirst(folder, QStringLiteral("Veluria"));
        defaults->setObject(QDateTime::currentDateTime(), VLRUserDefaultsKeyFirstLaunchDate);
    }
    if (!defaults->objectForKey(VLRUserDefaultsKeyShowNotifications).isValid())
        defaults->setBool(true, VLRUserDefaultsKeyShowNotifications);
    if (!defaults->objectForKey(VLRUserDefaultsKeyAutoOpenAssets).isValid())
        defaults->setBool(true, VLRUserDefaultsKeyAutoOpenAssets);
    if (!defaults->objectForKey(VLRUserDefaultsKeyLimitDownloadCacheSize).isValid())
        defaults->setBool(false, VLRUserDefaultsKeyLimitDownloadCacheSize);
}

void AppDelegate::checkForSoftwareUpdates()
{
    // Brings the pending tick forward to now. Right after a tick the new one
    // is not armed yet and the fired one is no longer active: then nothing.
    if (m_updateTimer && m_updateTimer->isActive())
        m_updateTimer->start(0);
}

void AppDelegate::scheduleUpdateTimer()
{
    VLRMainQueue::dispatchAsync(this, [this] {
        auto* timer = new QTimer(this);
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, &AppDelegate::softwareUpdateTimer);
        connect(timer, &QTimer::timeout, timer, &QObject::deleteLater);
        timer->start(SoftwareUpdateIntervalSeconds * 1000);
        m_updateTimer = timer;
    });
}

void AppDelegate::softwareUpdateTimer()
{
    scheduleUpdateTimer();
    if (m_services.library->reachabilityManager().currentNetworkStatus() == VLRReachabilityManager::NotReachable)
        return;
    std::shared_ptr<VLRVersionChecker> checker = m_services.library->createVersionChecker();
    if (!checker)
        return;
    QPointer<AppDelegate> self(this);
    checker->checkVersion([self, checker](bool unsupported, bool outOfDate, const vlr::OptionalError& error) {
        if (!self || error)
            return;
        const QDateTime postponed =
            self->m_services.defaults->objectForKey(VLRUserDefaultsKeyUpdatePostponedDate).toDateTime();
        // A postponement holds for strictly less than a day; without one
        // there is none. A date in the future holds until a day after it.
        const bool postponedNow =
            postponed.isValid() && UpdatePostponementSeconds > postponed.msecsTo(self->m_clock()) / 1000.0;
        const bool doOutOfDate = postponedNow ? false : outOfDate;
        VLRLogFormat(4, UpdateTag,
                     "AppDelegate - versionInfo: unsupported=%d, outOfDate=%d, lastPostponedDate=%@, doOutOfDate=%d",
                     unsupported, outOfDate, postponed.isValid() ? postponed.toString(Qt::ISODate) : QString(),
                     doOutOfDate);
        if (!doOutOfDate && !unsupported)
            return;
        checker->getVersionInfo([self, unsupported](const vlr::OptionalError&, const VLRVersionInfoPtr& info) {
            if (!self)
                return;
            VLRLogFormat(4, UpdateTag, "AppDelegate - versionInfo: currentVersion=%@, latestVersion=%@",
                         info ? info->currentVersion() : QString(), info ? info->latestVersionNice() : QString());
            // A failed request still shows the dialog, from whatever came.
            self->showSoftwareUpdateAlert(info, unsupported);
        });
    });
}

void AppDelegate::showSoftwareUpdateAlert(const VLRVersionInfoPtr& info, bool unsupported)
{
    if (m_updateDialogIsShowing || installerAppIsRunning())
        return;
    m_updateDialogIsShowing = true;

    const QString title = unsupported ? vlr::localized("This version of Veluria is no longer supported.")
                                      : vlr::localized("A newer version of Veluria is available.");
    QString description = vlr::format(vlr::localized("Please download the latest version. (%@)"),
                                      describe(info ? info->latestVersionNice() : QString()));
    // Only the default service goes without its name.
    VLREnvironment& environment = m_services.library->environment();
    if (environment.environment() != VLREnvironment::DefaultEnvironment)
        description = vlr::format(QStringLiteral("%@ - %@"), description, environment.domainName());
    const QString cancel = unsupported ? vlr::localized("Logout") : vlr::localized("Remind Me Later");

    m_updateAlertController =
        std::make_unique<UpdateAlertController>(title, description, vlr::localized("Install Update"), cancel,
                                                info ? info->releaseNotesHTML() : QString(), m_services.desktop);
    const VLRModalSession session = VLRModalSession::beginModalSessionForWindow(m_updateAlertController.get());
    m_updateAlertController->raise();
    m_updateAlertController->activateWindow();
    QPointer<AppDelegate> self(this);
    vlr_runAsyncModalSessionCompletionHandler(session, [self, info, unsupported](qint64 code) {
        if (self)
            self->updateAlertDidEnd(code, info, unsupported);
    });
}

void AppDelegate::updateAlertDidEnd(qint64 code, const VLRVersionInfoPtr& info, bool unsupported)
{
    m_updateAlertController.reset();
    m_updateDialogIsShowing = false;
    if (code != UpdateAlertController::InstallCode) {
        // "Logout" of an unsupported version only closes the dialog: the next
        // tick brings it back.
        if (!unsupported)
            handlePostponeInstallButton();
        return;
    }
    if (info && !info->termsOfService().isNull()) {
        m_updateEULAController = std::make_unique<UpdateEULAController>(info->termsOfService());
        const VLRModalSession session = VLRModalSession::beginModalSessionForWindow(m_updateEULAController.get());
        QPointer<AppDelegate> self(this);
        vlr_runAsyncModalSessionCompletionHandler(session, [self, info, unsupported](qint64 terms) {
            if (self)
                self->updateEULADidEnd(terms, info, unsupported);
        });
        return;
    }
    launchVeluriaInstallerApp(info ? info->downloadPageURL() : QUrl());
}

void AppDelegate::updateEULADidEnd(qint64 code, const VLRVersionInfoPtr& info, bool unsupported)
{
    m_updateEULAController.reset();
    if (code == UpdateEULAController::AgreeCode)
        launchVeluriaInstallerApp(info ? info->downloadPageURL() : QUrl());
    else if (!unsupported) // to disagree is to postpone
        handlePostponeInstallButton();
}

void AppDelegate::handlePostponeInstallButton()
{
    const char* const method = "-[AppDelegate __handlePostponeInstallButton]";
    VLRLogFormat(4, UpdateTag, "%s", method);
    m_services.defaults->setObject(m_clock(), VLRUserDefaultsKeyUpdatePostponedDate);
}

void AppDelegate::launchVeluriaInstallerApp(const QUrl& downloadPageURL)
{
    const char* const method = "-[AppDelegate __launchVeluriaInstallerApp:]";
    VLRLogFormat(4, UpdateTag, "%s", method);
    if (installerAppIsRunning())
        return;
    QString message;
    const QString installer = HelperProgram::executablePath(InstallerExecutableName);
    if (installer.isEmpty()) {
        message = vlr::format(vlr::localized("Can't find installer app at \"%@\""),
                              QCoreApplication::applicationDirPath() + QLatin1Char('/') + InstallerExecutableName);
    } else {
        QProcess process;
        process.setProgram(installer);
        process.setArguments({InstallerLaunchArgument});
        if (!process.startDetached())
            message = process.errorString();
    }
    if (message.isNull())
        return;
    m_services.notifications->vlr_scheduledNotificationWithTitle(vlr::localized("Error updating Veluria"), message);
    // The user can still fetch the new version by hand.
    if (!downloadPageURL.isEmpty() && m_services.desktop)
        m_services.desktop->openURL(downloadPageURL);
}

bool AppDelegate::installerAppIsRunning() const
{
    return !VLRRunningApplication::runningApplicationsWithExecutableName(InstallerExecutableName).isEmpty();
}

bool AppDelegate::willLaunchAppAtStartup()
{
    // The autostart folder is the only truth, read anew at each question.
    return XdgAutostart::forThisProgram().containsProgram();
}

bool AppDelegate::launchAppAtStartup(bool launch)
{
    XdgAutostart autostart = XdgAutostart::forThisProgram();
    if (!autostart.isAvailable())
        return false;
    if (launch) {
        // Answered as done whatever the write gave: whoever asked reads the
        // folder again to learn the outcome.
        if (!autostart.insertProgram())
            VLRLogFormat(5, Tag, "Error: the autostart entry %@ could not be written: %@", autostart.entryPath(),
                         autostart.errorString());
        return true;
    }
    const bool removed = autostart.removeProgram();
    if (!autostart.errorString().isEmpty())
        VLRLogFormat(5, Tag, "Error: the autostart entry could not be removed: %@", autostart.errorString());
    return removed;
}
