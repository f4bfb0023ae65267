#include "lists/ListDividerViewController.h"

#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "lists/ListDividerViewControllerDelegate.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"
#include "widgets/VLRTextField.h"
#include "widgets/VLRView.h"

#include <QHBoxLayout>

namespace {

struct DividerLook
{
    QString label;
    // Null for the types that show no button.
    QString buttonImage;
    QString buttonMouseOverImage;
};

DividerLook lookForType(quint64 type)
{
    switch (type) {
    case ListDividerViewController::Today:
        return {vlr::localized("TODAY"), {}, {}};
    case ListDividerViewController::Yesterday:
        return {vlr::localized("YESTERDAY"), {}, {}};
    case ListDividerViewController::ThisWeek:
        return {vlr::localized("THIS WEEK"), {}, {}};
    case ListDividerViewController::LastWeek:
        return {vlr::localized("LAST WEEK"), {}, {}};
    case ListDividerViewController::Earlier:
        return {vlr::localized("EARLIER"), {}, {}};
    case ListDividerViewController::New:
        return {vlr::localized("NEW"), QStringLiteral("marketplace_install_all_inactive"),
                QStringLiteral("marketplace_install_all_mouseover")};
    case ListDividerViewController::Updates:
        return {vlr::localized("UPDATES"), QStringLiteral("marketplace_update_all_inactive"),
                QStringLiteral("marketplace_update_all_mouseover")};
    case ListDividerViewController::Installed:
        return {vlr::localized("INSTALLED"), {}, {}};
    case ListDividerViewController::NotInstalled:
        return {vlr::localized("NOT INSTALLED"), {}, {}};
    default:
        return {QString(""), {}, {}};
    }
}

} // namespace

ListDividerViewController::~ListDividerViewController()
{
    m_delegate = nullptr;
}

QWidget* ListDividerViewController::loadView()
{
    auto* root = new VLRView();
    root->setBackgroundColor(VLRColors::grey(233));
    m_label = new VLRTextField(root);
    m_label->setAttributedStringValue({QString(), VLRFonts::muli(12), VLRColors::grey(151)});
    m_button = new VLRButton(root);
    QObject::connect(m_button, &QAbstractButton::clicked, this, [this] { buttonClicked(); });

    const DividerLook look = lookForType(m_type);
    m_label->setStringValue(look.label);
    if (look.buttonImage.isNull()) {
        m_button->hide();
    } else {
        const QPixmap mouseOver = VLRImageCatalogue::imageNamed(look.buttonMouseOverImage);
        m_button->setDefaultImage(VLRImageCatalogue::imageNamed(look.buttonImage));
        m_button->setMouseOverImage(mouseOver);
        m_button->setClickedImage(mouseOver);
        m_button->setFixedSize(VLRImageCatalogue::naturalSize(look.buttonImage));
    }

    auto* layout = new QHBoxLayout(root);
    layout->setContentsMargins(12, 0, 8, 0);
    layout->addWidget(m_label, 0, Qt::AlignVCenter);
    layout->addStretch();
    layout->addWidget(m_button, 0, Qt::AlignVCenter);
    return root;
}

void ListDividerViewController::buttonClicked()
{
    if (m_delegate)
        m_delegate->listDividerViewControllerHadButtonClick(this);
}
