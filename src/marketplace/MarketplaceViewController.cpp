#include "marketplace/MarketplaceViewController.h"

#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "app/VLRUserNotificationKeys.h"
#include "lists/ListSeparatorViewController.h"
#include "marketplace/MarketplaceLog.h"
#include "marketplace/MarketplaceViewControllerDelegate.h"
#include "marketplace/PurchaseAlertViewController.h"
#include "marketplace/PurchaseViewController.h"
#include "platform/VLRNotificationScheduling.h"
#include "service/VLRInstaller.h"
#include "service/VLRPurchase.h"
#include "widgets/VLRImageCatalogue.h"
#include "widgets/VLRViewControllerAdditions.h"

#include <QGridLayout>
#include <QSet>
#include <QVBoxLayout>

namespace {

constexpr int DividerHeight = 34;
constexpr int SeparatorHeight = 6;
constexpr int RowHeight = 111;

QString identifierOf(const VLRInstallerPtr& installer)
{
    return installer ? installer->identifier() : QString();
}

} // namespace

MarketplaceViewController::MarketplaceViewController(const ClientServices& services, std::function<QDateTime()> clock)
    : m_services(services)
    , m_clock(clock ? std::move(clock) : [] { return QDateTime::currentDateTime(); })
{
    // Made once and handed back to every rebuild; only the two with a button
    // need to be heard.
    m_newDivider = makeDivider(ListDividerViewController::New, true);
    m_updatesDivider = makeDivider(ListDividerViewController::Updates, true);
    m_installedDivider = makeDivider(ListDividerViewController::Installed, false);
    m_notInstalledDivider = makeDivider(ListDividerViewController::NotInstalled, false);
}

MarketplaceViewController::~MarketplaceViewController()
{
    if (m_purchasesTableView)
        m_purchasesTableView->setDataSource(nullptr);
    if (m_installersTableView)
        m_installersTableView->setDataSource(nullptr);
    m_tabSelectorViewController.setDelegate(nullptr);
    for (const auto& divider : {m_newDivider, m_updatesDivider})
        divider->setDelegate(nullptr);
    // The rows' views live in the tables; they go before the page's view.
    m_purchaseViewControllers.clear();
    m_installerViewControllers.clear();
    m_updateViewControllers.reset();
    m_notInstalledViewControllers.reset();
    m_installerNewViewControllers.reset();
    m_installerVCDictionary.clear();
    delete m_view;
}

std::shared_ptr<ListDividerViewController> MarketplaceViewController::makeDivider(quint64 type, bool withDelegate)
{
    auto divider = std::make_shared<ListDividerViewController>();
    divider->setType(type);
    if (withDelegate)
        divider->setDelegate(this);
    return divider;
}

QWidget* MarketplaceViewController::view()
{
    if (!m_view)
        loadView();
    return m_view;
}

void MarketplaceViewController::loadView()
{
    m_view = new VLRView();
    m_view->setBackgroundColor(VLRColors::grey(233));
    m_view->setBorderColor(VLRColors::grey(151));
    m_view->setBorderWidth(1);
    m_view->setBorderCornerRadius(0);

    m_tabSelectorView = new QWidget(m_view);
    m_tabSelectorView->setFixedHeight(MarketplaceTabSelectorViewController::BarHeight);
    // The lists and, over them while the session loads, its picture share
    // one cell.
    auto* pages = new QWidget(m_view);
    auto* cell = new QGridLayout(pages);
    cell->setContentsMargins(0, 0, 0, 0);
    m_tabView = new QStackedWidget(pages);
    m_backgroundView = new VLRImageView(pages);
    m_backgroundView->hide();
    cell->addWidget(m_tabView, 0, 0);
    cell->addWidget(m_backgroundView, 0, 0);
    m_purchasesTableView = new ListTableView();
    m_installersTableView = new ListTableView();
    for (ListTableView* table : {m_purchasesTableView.data(), m_installersTableView.data()}) {
        // The page's grey under short lists too, on light and dark desktops.
        QPalette palette = table->viewport()->palette();
        palette.setColor(QPalette::Base, VLRColors::grey(233));
        palette.setColor(QPalette::Window, VLRColors::grey(233));
        table->viewport()->setPalette(palette);
        table->viewport()->setAutoFillBackground(true);
        table->setDataSource(this);
        m_tabView->addWidget(table);
    }
    auto* layout = new QVBoxLayout(m_view);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(0);
    layout->addWidget(m_tabSelectorView);
    layout->addWidget(pages, 1);

    setParentView(m_tabSelectorViewController.view(), m_tabSelectorView);
    m_tabSelectorViewController.setDelegate(this);
}

void MarketplaceViewController::marketplaceTabSelectorDidSelectTab(MarketplaceTabSelectorViewController*, qint64 tab)
{
    if (m_tabView && tab >= 1 && tab <= m_tabView->count())
        m_tabView->setCurrentIndex(int(tab - 1));
}

void MarketplaceViewController::showUpdatesTab()
{
    m_tabSelectorViewController.selectTab(InstallersTab);
}

// Rows.

void MarketplaceViewController::updateInstallers(const VLRInstallerList& installers)
{
    QSet<QString> delivered;
    for (const VLRInstallerPtr& installer : installers) {
        const QString identifier = identifierOf(installer);
        delivered.insert(identifier);
        // A row that exists keeps the record it was made with.
        if (!m_installerVCDictionary.contains(identifier)) {
            auto row = std::make_shared<InstallerViewController>(installer, m_services.notifications);
            row->setDelegate(this);
            m_installerVCDictionary.insert(identifier, row);
        }
    }
    // A dropped row goes on showing in any group that holds it until that
    // group is delivered anew.
    for (auto it = m_installerVCDictionary.begin(); it != m_installerVCDictionary.end();)
        it = delivered.contains(it.key()) ? std::next(it) : m_installerVCDictionary.erase(it);
    updateInstallerViewControllers();
}

MarketplaceViewController::Rows MarketplaceViewController::rowsForInstallers(const VLRInstallerList& installers) const
{
    // An installer without a row is skipped without a word: the group comes
    // out short until it is delivered again.
    Rows rows;
    for (const VLRInstallerPtr& installer : installers)
        if (const auto row = m_installerVCDictionary.value(identifierOf(installer)))
            rows.append(row);
    return rows;
}

void MarketplaceViewController::updateInstallerUpdates(const VLRInstallerList& installers)
{
    for (const auto& row : std::as_const(m_installerVCDictionary))
        row->setIsUpdate(false);
    m_updateViewControllers = rowsForInstallers(installers);
    for (const auto& row : std::as_const(*m_updateViewControllers))
        row->setIsUpdate(true);
    updateInstallerViewControllers();
}

void MarketplaceViewController::updateNewInstallers(const VLRInstallerList& installers)
{
    m_installerNewViewControllers = rowsForInstallers(installers);
    updateInstallerViewControllers();
}

void MarketplaceViewController::updateNotInstalled(const VLRInstallerList& installers)
{
    m_notInstalledViewControllers = rowsForInstallers(installers);
    updateInstallerViewControllers();
}

void MarketplaceViewController::setLoggedIn(bool loggedIn)
{
    if (loggedIn)
        return;
    m_installerVCDictionary.clear();
    m_installersAlreadyNotified.clear();
}

void MarketplaceViewController::updateInstallerViewControllers()
{
    if (m_updatingInstallerViewControllers)
        return;
    m_updatingInstallerViewControllers = true;
    QMetaObject::invokeMethod(this, &MarketplaceViewController::rebuildInstallerViewControllers, Qt::QueuedConnection);
}

void MarketplaceViewController::rebuildInstallerViewControllers()
{
    // From here on a delivery queues another rebuild.
    m_updatingInstallerViewControllers = false;

    // Rows in none of the three delivered groups are the installed ones. Until
    // the new group has come once there is nothing to add the others to, so
    // every row counts as installed.
    QSet<QString> listed;
    if (m_installerNewViewControllers) {
        for (const std::optional<Rows>* group :
             {&m_installerNewViewControllers, &m_updateViewControllers, &m_notInstalledViewControllers}) {
            if (!*group)
                continue;
            for (const auto& row : **group) {
                listed.insert(identifierOf(row->installer()));
                if (row->isUpToDate())
                    row->setIsUpToDate(false);
            }
        }
    }
    Rows installed;
    for (auto it = m_installerVCDictionary.cbegin(); it != m_installerVCDictionary.cend(); ++it) {
        if (listed.contains(it.key()))
            continue;
        installed.append(it.value());
        if (!it.value()->isUpToDate())
            it.value()->setIsUpToDate(true);
    }

    m_installerViewControllers.clear();
    addInstallerViewControllersWithDivider(m_installerNewViewControllers, m_newDivider);
    addInstallerViewControllersWithDivider(m_updateViewControllers, m_updatesDivider);
    addInstallerViewControllersWithDivider(m_notInstalledViewControllers, m_notInstalledDivider);
    addInstallerViewControllersWithDivider(installed, m_installedDivider);
    if (!m_installerViewControllers.isEmpty())
        m_installerViewControllers.append(std::make_shared<ListSeparatorViewController>());

    notifyAboutInstallersUpdatedInstallers(installersToAnnounce(m_installerNewViewControllers),
                                           installersToAnnounce(m_updateViewControllers));
    if (m_installersTableView)
        m_installersTableView->reloadData();
    updateBadges();
}

void MarketplaceViewController::addInstallerViewControllersWithDivider(
    const std::optional<Rows>& group, const std::shared_ptr<ListDividerViewController>& divider)
{
    if (!group)
        return;
    for (qsizetype i = 0; i < group->size(); ++i) {
        if (i == 0)
            m_installerViewControllers.append(divider);
        else
            m_installerViewControllers.append(std::make_shared<ListSeparatorViewController>());
        m_installerViewControllers.append(group->at(i));
    }
}

VLRInstallerList MarketplaceViewController::installersToAnnounce(const std::optional<Rows>& group) const
{
    VLRInstallerList installers;
    if (!group)
        return installers;
    for (const auto& row : *group) {
        const VLRInstallerPtr& installer = row->installer();
        const VLRInstallerPtr told = m_installersAlreadyNotified.value(identifierOf(installer));
        if (!told || !told->isEqualToInstaller(installer))
            installers.append(installer);
    }
    return installers;
}

void MarketplaceViewController::notifyAboutInstallersUpdatedInstallers(const VLRInstallerList& newInstallers,
                                                                       const VLRInstallerList& updatedInstallers)
{
    VLRNotificationScheduling* notifications = m_services.notifications;
    if (notifications && !newInstallers.isEmpty()) {
        // The singular hangs on the number of updates, not of new
        // installers: the program has always said it so.
        notifications->vlr_scheduledNotificationWithTitle(
            vlr::localized("Thank You!"),
            updatedInstallers.size() == 1 ? vlr::localized("Your new purchase is available for download")
                                          : vlr::localized("Your new purchases are available for download"),
            QString(), VLRUserNotificationTypeUpdateAvailable);
    } else if (notifications && updatedInstallers.size() == 1) {
        const VLRInstallerPtr& installer = updatedInstallers.first();
        notifications->vlr_scheduledNotificationWithTitle(
            vlr::localized("Update Available"),
            vlr::format(vlr::localized("%@ has an update"), installer ? installer->name() : QString()),
            QStringLiteral("Update"), identifierOf(installer), QUrl(), VLRUserNotificationTypeUpdateAvailable);
    } else if (notifications && updatedInstallers.size() > 1) {
        notifications->vlr_scheduledNotificationWithTitle(
            vlr::localized("Updates Available"), vlr::localized("You have some updates in your Veluria account"),
            QString(), VLRUserNotificationTypeUpdateAvailable);
    }
    // Remembered also when nothing was said, so that notifications switched
    // on later bring no backlog.
    for (const VLRInstallerList* installers : {&newInstallers, &updatedInstallers})
        for (const VLRInstallerPtr& installer : *installers)
            m_installersAlreadyNotified.insert(identifierOf(installer), installer);
}

// Downloads.

void MarketplaceViewController::installerViewControllerNeedsInstallation(InstallerViewController* controller)
{
    startDownload(controller);
}

void MarketplaceViewController::installerViewControllerNeedsDelete(InstallerViewController* controller)
{
    if (controller && controller->installer())
        controller->installer()->deleteFromServerWithCompletionHandler({});
}

void MarketplaceViewController::installerViewControllerNeedsForget(InstallerViewController* controller)
{
    if (controller && controller->installer())
        controller->installer()->forgetLocalInstallWithCompletionHandler({});
}

void MarketplaceViewController::listDividerViewControllerHadButtonClick(ListDividerViewController* divider)
{
    if (divider == m_newDivider.get() && m_installerNewViewControllers)
        queueInstallerViewControllersForDownload(*m_installerNewViewControllers);
    else if (divider == m_updatesDivider.get() && m_updateViewControllers)
        queueInstallerViewControllersForDownload(*m_updateViewControllers);
}

void MarketplaceViewController::queueInstallerViewControllersForDownload(const Rows& rows)
{
    // All at once; what runs when is the library's affair, and a busy row is
    // skipped, so a second click changes nothing.
    for (const auto& row : rows)
        startDownload(row.get());
}

void MarketplaceViewController::startDownload(InstallerViewController* row)
{
    if (!row || !row->installer() || row->installer()->overallOperation())
        return;
    row->monitorProgress(row->installer()->downloadAndInstallLatestRevision());
}

void MarketplaceViewController::downloadAndInstallInstallerWithID(const QString& identifier)
{
    for (const auto& entry : std::as_const(m_installerViewControllers)) {
        auto* row = dynamic_cast<InstallerViewController*>(entry.get());
        if (!row) {
            // Dividers and separators have no installer: the walk ends here.
            qCDebug(lcMarketplace) << "Update from a notification not started: the list starts with a heading";
            return;
        }
        if (identifierOf(row->installer()) == identifier)
            startDownload(row);
    }
}

// Purchases.

void MarketplaceViewController::updatePurchases(const VLRPurchaseList& purchases)
{
    m_purchaseViewControllers.clear();
    const QDateTime now = m_clock();
    const QDateTime warningEnd = now.addSecs(CardWarningSeconds);

    // The first card purchase that ran out or runs out within the window ends
    // the scan, whichever it is.
    VLRPurchasePtr warned;
    bool expired = false;
    for (const VLRPurchasePtr& purchase : purchases) {
        if (!purchase || purchase->paymentType() != VLRPurchase::CreditCardPaymentType
            || !purchase->ccExpiresOn().isValid())
            continue;
        if (purchase->ccExpiresOn() < now || purchase->ccExpiresOn() < warningEnd) {
            warned = purchase;
            expired = purchase->ccExpiresOn() < now;
            break;
        }
    }
    if (warned) {
        // Told once, when the warning comes up.
        if (!m_purchaseWarning && m_services.notifications)
            m_services.notifications->vlr_scheduledNotificationWithTitle(
                expired ? vlr::localized("Your credit card has expired!")
                        : vlr::localized("Your credit card is about to expire!"),
                vlr::localized("Click here to update it."), warned->manageURL().toString(),
                expired ? VLRUserNotificationTypeCCExpired : VLRUserNotificationTypeCCAboutToExpire);
        m_purchaseViewControllers.append(std::make_shared<ListSeparatorViewController>());
        m_purchaseViewControllers.append(std::make_shared<PurchaseAlertViewController>(
            expired ? PurchaseAlertViewController::Expired : PurchaseAlertViewController::AboutToExpire,
            warned->manageURL(), m_services.desktop));
    }
    m_purchaseWarning = bool(warned);

    for (const VLRPurchasePtr& purchase : purchases) {
        m_purchaseViewControllers.append(std::make_shared<ListSeparatorViewController>());
        m_purchaseViewControllers.append(
            std::make_shared<PurchaseViewController>(purchase, m_services.desktop, m_clock));
    }
    if (!m_purchaseViewControllers.isEmpty())
        m_purchaseViewControllers.append(std::make_shared<ListSeparatorViewController>());

    if (m_purchasesTableView)
        m_purchasesTableView->reloadData();
    updateBadges();
    updateState();
}

void MarketplaceViewController::updateBadges()
{
    const qint64 installerCount = (m_updateViewControllers ? m_updateViewControllers->size() : 0)
        + (m_installerNewViewControllers ? m_installerNewViewControllers->size() : 0);
    const qint64 purchaseCount = m_purchaseWarning ? 1 : 0;
    m_tabSelectorViewController.showBadgeForInstallerCount(installerCount);
    m_tabSelectorViewController.showBadgeForPurchaseCountIsWarning(purchaseCount, m_purchaseWarning);
    if (m_delegate)
        m_delegate->marketplaceViewControllerDidChangeUpdateCountTo(this, installerCount + purchaseCount,
                                                                    m_purchaseWarning);
}

void MarketplaceViewController::updateState()
{
    const qint64 state = m_delegate && m_delegate->marketplaceViewControllerLoading() ? 1 : 0;
    if (state == m_state)
        return;
    m_state = state;
    view();
    if (m_state == 1) {
        m_backgroundView->setImage(VLRImageCatalogue::imageNamed(QStringLiteral("marketplace_loading.pdf")));
        m_backgroundView->show();
        m_backgroundView->raise();
    } else {
        m_backgroundView->setImage(QPixmap());
        m_backgroundView->hide();
    }
}

// Tables.

const MarketplaceViewController::Entries& MarketplaceViewController::entriesOfTable(ListTableView* tableView) const
{
    return tableView == m_installersTableView ? m_installerViewControllers : m_purchaseViewControllers;
}

int MarketplaceViewController::numberOfRowsInTableView(ListTableView* tableView)
{
    return int(entriesOfTable(tableView).size());
}

QWidget* MarketplaceViewController::tableViewViewForRow(ListTableView* tableView, int row)
{
    const Entries& entries = entriesOfTable(tableView);
    return row >= 0 && row < entries.size() ? entries[row]->view() : nullptr;
}

int MarketplaceViewController::tableViewHeightOfRow(ListTableView* tableView, int row)
{
    const Entries& entries = entriesOfTable(tableView);
    if (row < 0 || row >= entries.size())
        return RowHeight;
    ListItemViewController* entry = entries[row].get();
    if (tableView == m_installersTableView && dynamic_cast<ListDividerViewController*>(entry))
        return DividerHeight;
    if (dynamic_cast<ListSeparatorViewController*>(entry))
        return SeparatorHeight;
    return RowHeight;
}
