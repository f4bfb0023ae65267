#include "transfers/TransfersTabSelectorViewController.h"

#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "transfers/TransfersTabSelectorDelegate.h"
#include "widgets/VLRFonts.h"

#include <QHBoxLayout>

namespace {

const char* const TagProperty = "tag";
// A third of the popover's width inside its border.
constexpr int ButtonWidth = 119;

} // namespace

TransfersTabSelectorViewController::TransfersTabSelectorViewController(QObject* parent)
    : QObject(parent)
{ }

TransfersTabSelectorViewController::~TransfersTabSelectorViewController()
{
    m_delegate = nullptr;
    delete m_view;
}

QWidget* TransfersTabSelectorViewController::view()
{
    if (!m_view)
        loadView();
    return m_view;
}

void TransfersTabSelectorViewController::loadView()
{
    m_view = new VLRView;
    m_view->setBackgroundColor(VLRColors::grey(233));
    m_view->setBorderWidth(0);
    m_view->setFixedHeight(Height);
    auto* layout = new QHBoxLayout(m_view);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_uploadsButton = makeButton(vlr::localized("Uploads"), 1);
    m_downloadsButton = makeButton(vlr::localized("Downloads"), 2);
    m_completedButton = makeButton(vlr::localized("Completed"), 3);
    for (VLRButton* button : {m_uploadsButton.get(), m_downloadsButton.get(), m_completedButton.get()})
        layout->addWidget(button, 1, Qt::AlignCenter);
    setSelectedTab(1);
}

VLRButton* TransfersTabSelectorViewController::makeButton(const QString& title, int tag)
{
    // A fixed frame from the start: the badge is placed beside the title by
    // the button's width when it first shows.
    auto* button = new VLRButton(QRect(0, 0, ButtonWidth, Height), m_view);
    button->setFixedSize(ButtonWidth, Height);
    button->setProperty(TagProperty, tag);
    button->setCursor(Qt::PointingHandCursor);
    button->setAccessibleName(title);
    VLRAttributedString attributed;
    attributed.string = title;
    attributed.font = VLRFonts::muli(12);
    attributed.alignment = Qt::AlignCenter;
    button->setAttributedTitle(attributed);
    button->setTextColor(VLRColors::grey(151));
    button->setMouseOverTextColor(VLRColors::mainAppColor());
    connect(button, &VLRButton::clicked, this, [this, button] { tabButtonClicked(button); });
    return button;
}

void TransfersTabSelectorViewController::selectTab(int tab)
{
    setSelectedTab(tab);
}

void TransfersTabSelectorViewController::tabButtonClicked(VLRButton* sender)
{
    if (sender)
        setSelectedTab(sender->property(TagProperty).toInt());
}

void TransfersTabSelectorViewController::showBadgeForUploadCount(qint64 count)
{
    if (m_uploadsButton)
        m_uploadsButton->setBadgeValue(count);
}

void TransfersTabSelectorViewController::showBadgeForDownloadCount(qint64 count)
{
    if (m_downloadsButton)
        m_downloadsButton->setBadgeValue(count);
}

void TransfersTabSelectorViewController::setSelectedTab(int tab)
{
    for (VLRButton* button : {m_uploadsButton.get(), m_downloadsButton.get(), m_completedButton.get()}) {
        if (button)
            button->setTextColor(button->property(TagProperty).toInt() == tab ? VLRColors::mainAppColor()
                                                                              : VLRColors::grey(151));
    }
    if (m_delegate)
        m_delegate->transfersTabSelectorDidSelectTab(this, tab);
}
