#pragma once

#include "lists/ListDividerViewController.h"
#include "lists/ListDividerViewControllerDelegate.h"
#include "lists/ListTableView.h"
#include "lists/ListTableViewDataSource.h"
#include "lists/MarketplaceTabSelectorDelegate.h"
#include "lists/MarketplaceTabSelectorViewController.h"
#include "marketplace/InstallerViewController.h"
#include "marketplace/InstallerViewControllerDelegate.h"
#include "marketplace/MarketplacePage.h"
#include "platform/ClientServices.h"
#include "widgets/VLRImageView.h"
#include "widgets/VLRView.h"

#include <QDateTime>
#include <QHash>
#include <QMap>
#include <QPointer>
#include <QStackedWidget>

#include <functional>
#include <memory>
#include <optional>

// The marketplace tab: the purchases page (the user's purchases under one
// warning about a card that ran out or is about to) and the installers page
// (new, updates, not installed, installed, each under its divider).
//
// It keeps exactly one row per installer identifier for as long as the
// installer is delivered, so that a row's running download keeps showing;
// deliveries only regroup those rows. Any number of deliveries in one turn of
// the event loop cost one rebuild of the installers list on the next turn,
// which also tells the user, once per installer, what is new. Nothing is
// sorted: groups keep the delivered order. GUI thread only.
class MarketplaceViewController : public QObject,
                                  public MarketplacePage,
                                  public MarketplaceTabSelectorDelegate,
                                  public InstallerViewControllerDelegate,
                                  public ListDividerViewControllerDelegate,
                                  public ListTableViewDataSource
{
    Q_OBJECT

public:
    // Pages of the selector; the tab view shows page tab - 1.
    static constexpr qint64 PurchasesTab = MarketplaceTabSelectorViewController::PurchasesTab;
    static constexpr qint64 InstallersTab = MarketplaceTabSelectorViewController::InstallersTab;
    // When a card counts as about to expire: 30 days ahead.
    static constexpr qint64 CardWarningSeconds = 2592000;

    // The services are not owned and outlive the page; the clock tells "now"
    // for the card warning and the purchases' dates (the system's if empty).
    explicit MarketplaceViewController(const ClientServices& services, std::function<QDateTime()> clock = {});
    ~MarketplaceViewController() override;

    QWidget* view() override;
    void setDelegate(MarketplaceViewControllerDelegate* delegate) override { m_delegate = delegate; }

    void updateInstallers(const VLRInstallerList& installers) override;
    void updateInstallerUpdates(const VLRInstallerList& installers) override;
    void updateNewInstallers(const VLRInstallerList& installers) override;
    void updateNotInstalled(const VLRInstallerList& installers) override;
    void updatePurchases(const VLRPurchaseList& purchases) override;
    void setLoggedIn(bool loggedIn) override;
    void updateState() override;
    void showUpdatesTab() override;
    // Kept as the program always did it: the walk meets a divider first and
    // so starts nothing. The row's own button starts downloads.
    void downloadAndInstallInstallerWithID(const QString& identifier) override;

    void marketplaceTabSelectorDidSelectTab(MarketplaceTabSelectorViewController* selector, qint64 tab) override;
    void installerViewControllerNeedsInstallation(InstallerViewController* controller) override;
    void installerViewControllerNeedsDelete(InstallerViewController* controller) override;
    void installerViewControllerNeedsForget(InstallerViewController* controller) override;
    void listDividerViewControllerHadButtonClick(ListDividerViewController* divider) override;

    int numberOfRowsInTableView(ListTableView* tableView) override;
    QWidget* tableViewViewForRow(ListTableView* tableView, int row) override;
    int tableViewHeightOfRow(ListTableView* tableView, int row) override;

    // What the pages hold now, for the owner's tests and pictures.
    using Entries = QList<std::shared_ptr<ListItemViewController>>;
    const Entries& purchaseViewControllers() const { return m_purchaseViewControllers; }
    const Entries& installerViewControllers() const { return m_installerViewControllers; }
    bool purchaseWarning() const { return m_purchaseWarning; }
    qint64 state() const { return m_state; }
    MarketplaceTabSelectorViewController* tabSelectorViewController() { return &m_tabSelectorViewController; }
    ListTableView* purchasesTableView() const { return m_purchasesTableView; }
    ListTableView* installersTableView() const { return m_installersTableView; }
    QStackedWidget* tabView() const { return m_tabView; }
    VLRImageView* backgroundView() const { return m_backgroundView; }

private:
    using Rows = QList<std::shared_ptr<InstallerViewController>>;

    void loadView();
    std::shared_ptr<ListDividerViewController> makeDivider(quint64 type, bool withDelegate);
    Rows rowsForInstallers(const VLRInstallerList& installers) const;
    void updateInstallerViewControllers();
    void rebuildInstallerViewControllers();
    void addInstallerViewControllersWithDivider(const std::optional<Rows>& group,
                                                const std::shared_ptr<ListDividerViewController>& divider);
    VLRInstallerList installersToAnnounce(const std::optional<Rows>& group) const;
    void notifyAboutInstallersUpdatedInstallers(const VLRInstallerList& newInstallers,
                                                const VLRInstallerList& updatedInstallers);
    void queueInstallerViewControllersForDownload(const Rows& rows);
    void startDownload(InstallerViewController* row);
    void updateBadges();
    const Entries& entriesOfTable(ListTableView* tableView) const;

    ClientServices m_services;
    std::function<QDateTime()> m_clock;
    MarketplaceViewControllerDelegate* m_delegate = nullptr;

    MarketplaceTabSelectorViewController m_tabSelectorViewController;
    QPointer<VLRView> m_view;
    QPointer<QWidget> m_tabSelectorView;
    QPointer<QStackedWidget> m_tabView;
    QPointer<ListTableView> m_purchasesTableView;
    QPointer<ListTableView> m_installersTableView;
    QPointer<VLRImageView> m_backgroundView;

    std::shared_ptr<ListDividerViewController> m_newDivider;
    std::shared_ptr<ListDividerViewController> m_updatesDivider;
    std::shared_ptr<ListDividerViewController> m_installedDivider;
    std::shared_ptr<ListDividerViewController> m_notInstalledDivider;

    qint64 m_state = 0;
    bool m_updatingInstallerViewControllers = false;
    bool m_purchaseWarning = false;

    Entries m_purchaseViewControllers;
    Entries m_installerViewControllers;
    // Absent until their first delivery.
    std::optional<Rows> m_updateViewControllers;
    std::optional<Rows> m_notInstalledViewControllers;
    std::optional<Rows> m_installerNewViewControllers;
    // The only place where rows are made and dropped.
    QMap<QString, std::shared_ptr<InstallerViewController>> m_installerVCDictionary;
    // The record the user was last told about, by identifier.
    QHash<QString, VLRInstallerPtr> m_installersAlreadyNotified;
};
