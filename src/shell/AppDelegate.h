#pragma once

#include "platform/ClientServices.h"
#include "scripting/ScriptableApplication.h"
#include "service/VLRTypes.h"
#include "session/ApplicationRoot.h"
#include "session/MainViewControllerParts.h"
#include "widgets/StatusItemImageView.h"

#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <QRectF>

#include <functional>
#include <memory>

class MainViewController;
class QPropertyAnimation;
class QTimer;
class UpdateAlertController;
class UpdateEULAController;
class VLRStatusItem;

// The root of the client: starts and stops it in its required order, owns the
// main controller, the status item and the update timer, and manages the REST
// proxy; checks every ten minutes whether this version is still current and
// offers the new one.
class AppDelegate : public QObject, public ApplicationRoot, public ScriptableApplication
{
    Q_OBJECT

public:
    static constexpr int NSTerminateCancel = 0;
    static constexpr int NSTerminateNow = 1;
    static constexpr int SoftwareUpdateIntervalSeconds = 600;
    static constexpr double UpdatePostponementSeconds = 86400.0;
    static inline const QString RestProxyExecutableName = QStringLiteral("veluria-rest-proxy");
    // The program that fetches, checks and installs a new version; it lies
    // beside this one and is always started with "silent".
    static inline const QString InstallerExecutableName = QStringLiteral("veluria-installer");
    static inline const QString InstallerLaunchArgument = QStringLiteral("silent");

    using Clock = std::function<QDateTime()>;

    using PartsFactory = std::function<MainViewControllerParts(const ClientServices& services)>;

    // The first phase of the start: the service library comes up. The
    // factory makes the popover and the pages when the main controller is
    // created.
    AppDelegate(const ClientServices& services, PartsFactory partsFactory, QObject* parent = nullptr);
    ~AppDelegate() override;

    // Second phase: settings, the main controller and the status item.
    void awakeFromNib();
    // Third phase: the library's database, the proxy, notifications, the
    // environment, the first version check; the popover follows a second later.
    void applicationDidFinishLaunching();
    int applicationShouldTerminate();
    void applicationWillTerminate();

    // A download link handed to the client.
    void downloadUrl(const QString& url);

    void launchRestProxy();
    void checkForSoftwareUpdates() override;

    // ApplicationRoot.
    StatusItemImageView* statusItemView() override;
    bool willLaunchAppAtStartup() override;
    bool launchAppAtStartup(bool launch) override;
    void terminate() override;

    bool skipOpeningPop() const { return m_skipOpeningPop; }
    void setSkipOpeningPop(bool skip) override { m_skipOpeningPop = skip; }
    // A launch from the login items leaves the popover closed.
    void setLaunchedAsLoginItem(bool loginItem) { m_launchedAsLoginItem = loginItem; }
    bool updateDialogIsShowing() const { return m_updateDialogIsShowing; }
    MainViewController* mainViewController() const override { return m_mainViewController.get(); }
    // The pending tick of the version check.
    QTimer* updateTimer() const { return m_updateTimer; }
    // The open dialogs of an update, if any.
    UpdateAlertController* updateAlertController() const { return m_updateAlertController.get(); }
    UpdateEULAController* updateEULAController() const { return m_updateEULAController.get(); }
    // What "now" is for the postponement of an update; the system clock
    // unless a test fixes it.
    void setClock(Clock clock) { m_clock = std::move(clock); }
    VLRStatusItem* statusItem() const { return m_statusItem.get(); }
    QRectF statusItemFrame() const { return m_statusItemFrame; }

    // The folder handed to the library for its database; null when there is
    // no data location.
    static QUrl databaseLocation();
    // "~/Veluria/": where downloads go by default.
    static QString userFolderPath();

    // The status item's window moved: an open popover glides after it.
    void statusItemDidMove(const QRectF& frame);

signals:
    // The stop was accepted: the event loop may end.
    void terminated();

private:
    void setDefaultUserDefaults();
    void scheduleUpdateTimer();
    void softwareUpdateTimer();
    void showSoftwareUpdateAlert(const VLRVersionInfoPtr& info, bool unsupported);
    void updateAlertDidEnd(qint64 code, const VLRVersionInfoPtr& info, bool unsupported);
    void updateEULADidEnd(qint64 code, const VLRVersionInfoPtr& info, bool unsupported);
    void handlePostponeInstallButton();
    void launchVeluriaInstallerApp(const QUrl& downloadPageURL);
    bool installerAppIsRunning() const;

    ClientServices m_services;
    PartsFactory m_partsFactory;
    bool m_skipOpeningPop = false;
    bool m_launchedAsLoginItem = false;
    bool m_updateDialogIsShowing = false;
    std::unique_ptr<MainViewController> m_mainViewController;
    std::unique_ptr<VLRStatusItem> m_statusItem;
    QPointer<StatusItemImageView> m_statusItemView;
    QPointer<QTimer> m_updateTimer;
    std::unique_ptr<UpdateAlertController> m_updateAlertController;
    std::unique_ptr<UpdateEULAController> m_updateEULAController;
    Clock m_clock = [] { return QDateTime::currentDateTime(); };
    QRectF m_statusItemFrame;
    QPointer<QPropertyAnimation> m_popoverGlide;
};
