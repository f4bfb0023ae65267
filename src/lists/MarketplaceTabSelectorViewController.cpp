#include "lists/MarketplaceTabSelectorViewController.h"

#include "app/AppFlavor.h"
#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "lists/MarketplaceTabSelectorDelegate.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRView.h"

#include <QHBoxLayout>

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
    m_view->setBackgroundColor(VLRColors::grey(233));
    m_view->setBorderColor(VLRColors::grey(151));
    m_view->setBorderCornerRadius(0);
    m_view->setBorderWidth(1);

    m_purchasesButton = new VLRButton(m_view);
    m_purchasesButton->setTitle(vlr::localized("PURCHASES"));
    m_purchasesButton->setProperty("tag", qint64(PurchasesTab));
    m_updatesButton = new VLRButton(m_view);
    m_updatesButton->setTitle(vlr::localized("UPDATES"));
    m_updatesButton->setProperty("tag", qint64(InstallersTab));
    auto* layout = new QHBoxLayout(m_view);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(0);
    for (VLRButton* button : {m_purchasesButton.data(), m_updatesButton.data()}) {
        button->setMinimumHeight(30);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        layout->addWidget(button);
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
