#include "marketplace/PurchaseAlertViewController.h"

#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "marketplace/ManagePage.h"
#include "marketplace/RowLayout.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"

PurchaseAlertViewController::PurchaseAlertViewController(qint64 type, const QUrl& manageURL,
                                                         VLRDesktopServices* desktop)
    : m_type(type)
    , m_manageUrl(manageURL)
    , m_desktop(desktop)
{ }

QWidget* PurchaseAlertViewController::loadView()
{
    const bool expired = m_type == Expired;
    VLRView* root = makeRootView();
    RowLayout layout(root);
    m_backgroundBorderView = layout.card(VLRColors::grey(206));
    m_backgroundView = layout.cardFace(m_backgroundBorderView);
    m_backgroundView->setBackgroundColor(expired ? QColor::fromRgbF(249 / 255.0f, 109 / 255.0f, 109 / 255.0f)
                                                 : QColor::fromRgbF(1, 206 / 255.0f, 0));

    const QString picture =
        expired ? QStringLiteral("marketplace_cc_expired") : QStringLiteral("marketplace_cc_about_to_expire");
    m_warningImage = new VLRImageView(root);
    m_warningImage->setImage(VLRImageCatalogue::imageNamed(picture));
    layout.placeIcon(m_warningImage);

    // The sentence over the whole card, the button under it.
    m_alertText = layout.textField(VLRFonts::muli(12, QFont::DemiBold), expired ? Qt::white : VLRColors::textColor());
    m_alertText->setStringValue(expired ? vlr::localized("Your credit card has expired.")
                                        : vlr::localized("Your credit card is about to expire."));
    layout.stackTexts({m_alertText}, 30, true);

    const QString button =
        expired ? QStringLiteral("marketplace_button_cc_expired") : QStringLiteral("marketplace_button_cc_warning");
    const QPixmap active = VLRImageCatalogue::imageNamed(button + QStringLiteral("_active"));
    m_alertButton = new VLRButton(root);
    m_alertButton->setDefaultImage(VLRImageCatalogue::imageNamed(button + QStringLiteral("_inactive")));
    m_alertButton->setMouseOverImage(active);
    m_alertButton->setClickedImage(active);
    layout.placeAction(m_alertButton, VLRImageCatalogue::naturalSize(button + QStringLiteral("_inactive")), 16);
    connect(m_alertButton, &QAbstractButton::clicked, this, &PurchaseAlertViewController::onAlertButton);
    return root;
}

void PurchaseAlertViewController::onAlertButton()
{
    openManagePage(m_desktop, m_manageUrl);
}
