#include "shell/AppDelegate.h"

#include "app/AppFlavor.h"
#include "app/VLRText.h"
#include "app/VLRUserDefaultsKeys.h"
#include "app/VLRUserNotificationKeys.h"
#include "platform/HelperProgram.h"
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
#include "widgets/StatusItemImageView.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

namespace {

const QString Tag = QStringLiteral("SDKClient");
const QString RestProxyTag = QStringLiteral("RestProxy");
const QString UpdateTag = QStringLiteral("VeluriaSWUpdate");
constexpr int StatusItemSize = 24;
constexpr int FirstPopoverDelayMilliseconds = 1000;
constexpr double PostponementSeconds = 86400.0;

} // namespace

AppDelegate::AppDelegate(const ClientServices& services, PartsFactory partsFactory, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_partsFactory(std::move(partsFactory))
{
    m_services.library->init().initUsingCrashlytics(true);
    VLRLogFormat(4, Tag, "Veluria %@ starting", QCoreApplication::applicationVersion());
}

AppDelegate::~AppDelegate()
{
    // The controller unbinds its session while the status item still exists.
    m_mainViewController.reset();
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

    m_mainViewController->loadView();
    VLRLogFormat(4, Tag, "Main view loaded");
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
    const QString environment = domain ? domain->value(VLRUserDefaultsKeyEnvironment).toString() : QString();
    if (!environment.isEmpty())
        m_services.library->environment().setEnvironmentWithDomainName(environment);

    softwareUpdateTimer();

    if (m_launchedAsLoginItem)
        m_skipOpeningPop = true;

    VLRMainQueue::dispatchAfter(FirstPopoverDelayMilliseconds, this, [this] {
        Popover* popover = m_mainViewController ? m_mainViewController->popover() : nullptr;
        if (!m_skipOpeningPop && popover && !popover->isShown()) {
            if (m_statusItem)
                m_statusItem->followTrayIcon();
            m_mainViewController->togglePopover();
        }
    });
    VLRLogFormat(4, Tag, "Launch finished%@", QString::fromLatin1(m_launchedAsLoginItem ? " (login item)" : ""));
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
    VLRLogFormat(4, Tag, "Stopping");
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
    if (popover && popover->isShown())
        if (QWidget* window = popover->window())
            window->move(window->pos() + delta.toPoint());
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
    if (m_updateTimer)
        m_updateTimer->stop();
    softwareUpdateTimer();
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
        const double interval = postponed.isValid() ? postponed.msecsTo(QDateTime::currentDateTime()) / 1000.0 : 0;
        // A postponement holds for strictly less than a day; without one
        // there is none.
        const bool doOutOfDate = postponed.isValid() && PostponementSeconds > interval ? false : outOfDate;
        VLRLogFormat(4, UpdateTag,
                     "AppDelegate - versionInfo: unsupported=%d, outOfDate=%d, lastPostponedDate=%@, doOutOfDate=%d",
                     unsupported, outOfDate,
                     postponed.isValid() ? postponed.toString(Qt::ISODate) : QStringLiteral("(null)"), doOutOfDate);
        if (!doOutOfDate && !unsupported)
            return;
        checker->getVersionInfo([self, unsupported](const vlr::OptionalError&, const VLRVersionInfoPtr& info) {
            if (!self)
                return;
            VLRLogFormat(4, UpdateTag, "AppDelegate - versionInfo: currentVersion=%@, latestVersion=%@",
                         info ? info->currentVersion() : QString(), info ? info->latestVersionNice() : QString());
        });
    });
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
