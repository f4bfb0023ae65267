#include "lists/MarketplaceTabSelectorViewController.h"

#include "app/AppFlavor.h"
#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "lists/MarketplaceTabSelectorDelegate.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRView.h"

MarketplaceTabSelectorViewController::~MarketplaceTabSelectorViewController()
{
    m_delegate = nullptr;
    delete m_view;
}

QWidget* MarketplaceTabSelectorViewController::view()
{
    if (!m_view)
        loadView();
    return m_view;
}

void MarketplaceTabSelectorViewController::loadView()
{
    m_view = new VLRView();
    m_view->setFixedSize(BarWidth, BarHeight);
    m_view->setBackgroundColor(VLRColors::grey(233));
    m_view->setBorderColor(VLRColors::grey(151));
    m_view->setBorderCornerRadius(0);
    m_view->setBorderWidth(1);

    // Two halves of the bar, inside its border; the buttons centre their
    // titles and badges on the frames they are made with.
    const int half = (BarWidth - 2) / 2;
    m_purchasesButton = new VLRButton(QRect(1, 1, half, BarHeight - 2), m_view);
    m_purchasesButton->setTitle(vlr::localized("PURCHASES"));
    m_purchasesButton->setProperty("tag", qint64(PurchasesTab));
    m_updatesButton = new VLRButton(QRect(1 + half, 1, BarWidth - 2 - half, BarHeight - 2), m_view);
    m_updatesButton->setTitle(vlr::localized("UPDATES"));
    m_updatesButton->setProperty("tag", qint64(InstallersTab));
    for (VLRButton* button : {m_purchasesButton.data(), m_updatesButton.data()}) {
        connect(button, &QAbstractButton::clicked, this, [this, button] { tabButtonClicked(button); });
        setUpButton(button);
    }
    setSelectedTab(PurchasesTab);
}

void MarketplaceTabSelectorViewController::setUpButton(VLRButton* button)
{
    VLRAttributedString title = button->attributedTitle();
    title = VLRAttributedString{title.string, VLRFonts::muli(12)};
    title.alignment = Qt::AlignHCenter;
    button->setAttributedTitle(title);
    button->setTextColor(VLRColors::grey(151));
    button->setMouseOverTextColor(AppFlavor::mainAppColor());
}

void MarketplaceTabSelectorViewController::selectTab(qint64 tab)
{
    view();
    setSelectedTab(tab);
}

void MarketplaceTabSelectorViewController::tabButtonClicked(VLRButton* sender)
{
    selectTab(sender->property("tag").toLongLong());
}

void MarketplaceTabSelectorViewController::setSelectedTab(qint64 tab)
{
    m_purchasesButton->setTextColor(tab == PurchasesTab ? AppFlavor::mainAppColor() : VLRColors::grey(151));
    m_updatesButton->setTextColor(tab == InstallersTab ? AppFlavor::mainAppColor() : VLRColors::grey(151));
    if (m_delegate)
        m_delegate->marketplaceTabSelectorDidSelectTab(this, tab);
}

void MarketplaceTabSelectorViewController::showBadgeForInstallerCount(qint64 count)
{
    view();
    m_updatesButton->setBadgeValue(count);
}

void MarketplaceTabSelectorViewController::showBadgeForPurchaseCountIsWarning(qint64 count, bool isWarning)
{
    view();
    m_purchasesButton->setBadgeIsWarning(isWarning);
    m_purchasesButton->setBadgeValue(count);
}
