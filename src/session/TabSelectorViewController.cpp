#include "session/TabSelectorViewController.h"

#include "app/AppFlavor.h"
#include "app/VLRColors.h"
#include "app/VLRTab.h"
#include "app/VLRText.h"
#include "session/TabSelectorViewControllerDelegate.h"
#include "widgets/VLRDropTargetButton.h"
#include "widgets/VLRImageCatalogue.h"
#include "widgets/VLRView.h"
#include "widgets/VLRViewAdditions.h"

#include <QGuiApplication>

namespace {

constexpr int ButtonSize = 40;
constexpr int HiddenTabShift = 32;

struct PlainTabImages
{
    int tab;
    const char* mouseOver;
    const char* selected;
    const char* unselected;
};

// Workspaces first, then file drop, marketplace and preferences.
const PlainTabImages plainTabs[] = {
    {VLRTab::Workspaces, "tabBarWorkspacesMouseOver", "tabBarWorkspacesSelected", "tabBarWorkspacesUnselected"},
    {VLRTab::FileDrop, "tabBarFileDropMouseOver", "tabBarFileDropSelected", "tabBarFileDropUnselected"},
    {VLRTab::Marketplace, "tabBarMarketplaceMouseOver", "tabBarMarketplaceSelected", "tabBarMarketplaceUnselected"},
    {VLRTab::Preferences, "tabBarPreferencesMouseOver", "tabBarPreferencesSelected", "tabBarPreferencesUnselected"},
};

struct TransfersImages
{
    const char* inactive;
    const char* mouseOver;
    const char* active;
};

// By current uploads and downloads. With both at work the active picture also
// serves for the pointer over the tab.
TransfersImages transfersImages(bool uploads, bool downloads)
{
    if (uploads && downloads)
        return {"queue_main_icon_transfers_in_progress_inactive", "queue_main_icon_transfers_in_progress_active",
                "queue_main_icon_transfers_in_progress_active"};
    if (uploads)
        return {"queue_main_icon_upload_in_progress_inactive", "queue_main_icon_upload_in_progress_mouseover",
                "queue_main_icon_upload_in_progress_active"};
    if (downloads)
        return {"queue_main_icon_download_in_progress_inactive", "queue_main_icon_download_in_progress_mouseover",
                "queue_main_icon_download_in_progress_active"};
    return {"queue_main_icon_inactive", "queue_main_icon_mouseover", "queue_main_icon_active"};
}

int tagOf(const QWidget* button)
{
    return button ? button->property("tag").toInt() : 0;
}

} // namespace

TabSelectorViewController::TabSelectorViewController(QObject* parent)
    : QObject(parent)
{ }

TabSelectorViewController::~TabSelectorViewController()
{
    delete m_view;
}

QWidget* TabSelectorViewController::view()
{
    if (!m_view)
        loadView();
    return m_view;
}

VLRButton* TabSelectorViewController::makeButton(VLRButton* button, int tab, int x)
{
    button->setProperty("tag", tab);
    button->setGeometry(x, (BarHeight - ButtonSize) / 2, ButtonSize, ButtonSize);
    connect(button, &QAbstractButton::clicked, this, [this, button] { tabButtonClicked(button); });
    return button;
}

void TabSelectorViewController::loadView()
{
    m_view = new VLRView();
    m_view->setFixedSize(BarWidth, BarHeight);
    m_view->setBackgroundColor(VLRColors::grey(250));
    // A thin line between the bar and the page under it.
    auto* rule = new VLRView(m_view);
    rule->setBackgroundColor(VLRColors::grey(206));
    rule->setGeometry(0, BarHeight - 1, BarWidth, 1);

    // Five equal slots across the bar, in tab order.
    const int gap = (BarWidth - 5 * ButtonSize) / 6;
    const auto slot = [gap](int tab) { return gap + (tab - 1) * (ButtonSize + gap); };
    m_fileDropButton = new VLRDropTargetButton(m_view);
    m_workspacesButton = new VLRDropTargetButton(m_view);
    m_marketplaceButton = new VLRButton(m_view);
    m_transfersButton = new VLRButton(m_view);
    m_settingsButton = new VLRButton(m_view);
    makeButton(m_fileDropButton, VLRTab::FileDrop, slot(VLRTab::FileDrop));
    makeButton(m_workspacesButton, VLRTab::Workspaces, slot(VLRTab::Workspaces));
    makeButton(m_marketplaceButton, VLRTab::Marketplace, slot(VLRTab::Marketplace));
    makeButton(m_transfersButton, VLRTab::Transfers, slot(VLRTab::Transfers));
    makeButton(m_settingsButton, VLRTab::Preferences, slot(VLRTab::Preferences));
    // The tabs are pictures alone: these are the names a screen reader says.
    m_fileDropButton->setAccessibleName(vlr::localized("File Drop"));
    m_workspacesButton->setAccessibleName(vlr::localized("Workspaces"));
    m_marketplaceButton->setAccessibleName(vlr::localized("Marketplace"));
    m_transfersButton->setAccessibleName(vlr::localized("Transfers"));
    m_settingsButton->setAccessibleName(vlr::localized("Preferences"));

    m_activeUploads = false;
    m_activeDownloads = false;
    // Already tells the delegate, which is why it is set before the view loads.
    setSelectedTab(0);
    m_fileDropButton->setDelegate(this);
    m_workspacesButton->setDelegate(this);
    for (const PlainTabImages& images : plainTabs) {
        VLRButton* button = buttonForTab(images.tab);
        button->setMouseOverImage(VLRImageCatalogue::imageNamed(QString::fromLatin1(images.mouseOver)));
        button->setClickedImage(VLRImageCatalogue::imageNamed(QString::fromLatin1(images.selected)));
    }
    enableDisableTabs();
    hideUnusedTabs();
    for (VLRButton* button : {static_cast<VLRButton*>(m_fileDropButton), static_cast<VLRButton*>(m_workspacesButton),
                              m_marketplaceButton.data(), m_settingsButton.data()})
        button->setBadgeOffset(QPointF(-7, -12));
    m_transfersButton->setBadgeOffset(QPointF(-2, -12));
}

VLRButton* TabSelectorViewController::buttonForTab(int tab) const
{
    switch (tab) {
    case VLRTab::FileDrop:
        return m_fileDropButton;
    case VLRTab::Workspaces:
        return m_workspacesButton;
    case VLRTab::Marketplace:
        return m_marketplaceButton;
    case VLRTab::Transfers:
        return m_transfersButton;
    case VLRTab::Preferences:
        return m_settingsButton;
    default:
        return nullptr;
    }
}

void TabSelectorViewController::selectTab(int tab)
{
    view();
    if (m_delegate && !m_delegate->tabSelectorViewControllerShouldSelectTab(this, tab))
        return;
    setSelectedTab(tab);
}

void TabSelectorViewController::tabButtonClicked(VLRButton* button)
{
    selectTab(tagOf(button));
}

void TabSelectorViewController::setSelectedTab(int tab)
{
    m_selectedTab = tab;
    setTransfersTabIcon();
    for (const PlainTabImages& images : plainTabs) {
        VLRButton* button = buttonForTab(images.tab);
        button->setDefaultImage(VLRImageCatalogue::imageNamed(
            QString::fromLatin1(images.tab == tab ? images.selected : images.unselected)));
    }
    for (const PlainTabImages& images : plainTabs)
        buttonForTab(images.tab)->setMouseOverStyle(images.tab == tab ? VLRMouseOverStyleNone : VLRMouseOverStyleImage);
    if (m_delegate)
        m_delegate->tabSelectorViewControllerDidSelectTab(this, tab);
}

void TabSelectorViewController::setTransfersTabIcon()
{
    if (!m_transfersButton)
        return;
    const TransfersImages images = transfersImages(m_activeUploads, m_activeDownloads);
    const bool selected = m_selectedTab == VLRTab::Transfers;
    m_transfersButton->setDefaultImage(
        VLRImageCatalogue::imageNamed(QString::fromLatin1(selected ? images.active : images.inactive)));
    m_transfersButton->setMouseOverImage(VLRImageCatalogue::imageNamed(QString::fromLatin1(images.mouseOver)));
    m_transfersButton->setClickedImage(VLRImageCatalogue::imageNamed(QString::fromLatin1(images.active)));
    m_transfersButton->setMouseOverStyle(selected ? VLRMouseOverStyleNone : VLRMouseOverStyleImage);
}

void TabSelectorViewController::showActiveUploads(bool uploads, bool downloads)
{
    m_activeUploads = uploads;
    m_activeDownloads = downloads;
    setTransfersTabIcon();
}

void TabSelectorViewController::setBadgeValue(qint64 value, int forTab, bool isWarning)
{
    view();
    if (VLRButton* button = buttonForTab(forTab)) {
        button->setBadgeIsWarning(isWarning);
        button->setBadgeValue(value);
    }
}

void TabSelectorViewController::enableDisableTabs()
{
    if (!m_marketplaceButton)
        return;
    // Without a delegate nobody supports the two tabs, and they are disabled.
    const auto supported = [this](int tab) {
        return m_delegate && m_delegate->tabSelectorViewControllerTabSupported(this, tab);
    };
    m_marketplaceButton->setEnabled(supported(VLRTab::Marketplace));
    m_settingsButton->setEnabled(supported(VLRTab::Preferences));
}

void TabSelectorViewController::hideUnusedTabs()
{
    if (AppFlavor::supportsTabType(VLRTab::Preferences) || AppFlavor::supportsTabType(VLRTab::Marketplace))
        return;
    const int width = m_view->width();
    m_marketplaceButton->hide();
    m_settingsButton->hide();
    for (QWidget* button : {static_cast<QWidget*>(m_fileDropButton), static_cast<QWidget*>(m_workspacesButton),
                            static_cast<QWidget*>(m_marketplaceButton), static_cast<QWidget*>(m_transfersButton),
                            static_cast<QWidget*>(m_settingsButton)})
        vlr_removeAllConstraints(button);
    m_transfersButton->move(m_settingsButton->x() - HiddenTabShift, m_settingsButton->y());
    m_fileDropButton->move(m_fileDropButton->x() + HiddenTabShift, m_fileDropButton->y());
    m_workspacesButton->move(width / 2 - m_workspacesButton->width() / 2 + 3, m_workspacesButton->y());
}

void TabSelectorViewController::dropTargetButtonDidReceiveDragEvent(VLRDropTargetButton* button)
{
    if (button == m_fileDropButton)
        selectTab(VLRTab::FileDrop);
    else if (button == m_workspacesButton)
        selectTab(VLRTab::Workspaces);
}

void TabSelectorViewController::dropTargetButtonDidReceiveFiles(VLRDropTargetButton*, const QStringList& files)
{
    if (m_delegate)
        m_delegate->tabSelectorViewControllerDidReceiveDroppedFiles(this, files);
}
