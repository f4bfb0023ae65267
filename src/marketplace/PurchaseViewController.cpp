#include "marketplace/PurchaseViewController.h"

#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "marketplace/ManagePage.h"
#include "marketplace/RowLayout.h"
#include "service/VLRProduct.h"
#include "service/VLRPurchase.h"
#include "service/VLRVendor.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"

#include <QEvent>
#include <QLocale>

namespace {

char vendorNameContext;
char productNameContext;
char productImageContext;
char renewsAtContext;

// The locale's long date without the weekday: "January 1, 2027",
// "1. Januar 2027".
QString longDateFormat(const QLocale& locale)
{
    QString format = locale.dateFormat(QLocale::LongFormat);
    format.remove(QStringLiteral("dddd"));
    while (!format.isEmpty() && (format.front() == u',' || format.front().isSpace()))
        format.remove(0, 1);
    while (!format.isEmpty() && (format.back() == u',' || format.back().isSpace()))
        format.chop(1);
    return format;
}

} // namespace

PurchaseViewController::PurchaseViewController(const VLRPurchasePtr& purchase, VLRDesktopServices* desktop,
                                               std::function<QDateTime()> clock)
    : m_purchase(purchase)
    , m_desktop(desktop)
    , m_clock(std::move(clock))
    , m_dateFormat(longDateFormat(m_dateLocale))
{
    if (!m_purchase)
        return;
    m_observedProduct = m_purchase->product();
    m_observedVendor = m_observedProduct ? m_observedProduct->vendor() : nullptr;
    if (m_observedVendor)
        m_observedVendor->addObserver(this, VLRVendor::Key::name, vlr::KeyValueObservingOptionNone, &vendorNameContext);
    if (m_observedProduct) {
        m_observedProduct->addObserver(this, VLRProduct::Key::name, vlr::KeyValueObservingOptionNone,
                                       &productNameContext);
        m_observedProduct->addObserver(this, VLRProduct::Key::image, vlr::KeyValueObservingOptionNone,
                                       &productImageContext);
    }
    m_purchase->addObserver(this, VLRPurchase::Key::renewsAt, vlr::KeyValueObservingOptionNone, &renewsAtContext);
}

PurchaseViewController::~PurchaseViewController()
{
    if (m_observedVendor)
        m_observedVendor->removeObserver(this, VLRVendor::Key::name, &vendorNameContext);
    if (m_observedProduct) {
        m_observedProduct->removeObserver(this, VLRProduct::Key::name, &productNameContext);
        m_observedProduct->removeObserver(this, VLRProduct::Key::image, &productImageContext);
    }
    if (m_purchase)
        m_purchase->removeObserver(this, VLRPurchase::Key::renewsAt, &renewsAtContext);
}

QWidget* PurchaseViewController::loadView()
{
    VLRView* root = makeRootView();
    RowLayout layout(root);
    m_backgroundBorderView = layout.card(VLRColors::grey(206));
    m_backgroundView = layout.cardFace(m_backgroundBorderView);
    m_productImageView = new VLRImageView(root);
    layout.placeIcon(m_productImageView);
    m_productNameField = layout.textField(VLRFonts::muli(13, QFont::DemiBold), VLRColors::textColor());
    m_manufacturerField = layout.textField(VLRFonts::muli(11), VLRColors::grey(151));
    m_renewsAtField = layout.textField(VLRFonts::muli(11), VLRColors::grey(151));

    const QString image = QStringLiteral("marketplace_manage_inactive");
    const QPixmap mouseOver = VLRImageCatalogue::imageNamed(QStringLiteral("marketplace_manage_mouseover"));
    m_manageButton = new VLRButton(root);
    m_manageButton->setDefaultImage(VLRImageCatalogue::imageNamed(image));
    m_manageButton->setMouseOverImage(mouseOver);
    m_manageButton->setClickedImage(mouseOver);
    // It comes with the pointer.
    m_manageButton->hide();
    layout.placeAction(m_manageButton, VLRImageCatalogue::naturalSize(image), 0);
    layout.stackTextsBeside({m_productNameField, m_manufacturerField, m_renewsAtField}, 30,
                            VLRImageCatalogue::naturalSize(image).width());
    connect(m_manageButton, &QAbstractButton::clicked, this, &PurchaseViewController::manage);
    root->trackMouseWithOwner(this);
    return root;
}

void PurchaseViewController::viewDidLoad()
{
    updateFields();
}

void PurchaseViewController::updateFields()
{
    if (!isViewLoaded() || !m_purchase)
        return;
    const VLRProductPtr& product = m_purchase->product();
    if (product && !product->name().isNull())
        m_productNameField->setStringValue(product->name());
    if (product && product->vendor() && !product->vendor()->name().isNull())
        m_manufacturerField->setStringValue(product->vendor()->name());
    if (product && !product->image().isNull())
        m_productImageView->setImage(QPixmap::fromImage(product->image()));

    // Read at each refresh only: a row that stays past the date shows the old
    // text until the next change.
    const QDateTime now = m_clock ? m_clock() : QDateTime::currentDateTime();
    if (m_purchase->renewsAt() < now) {
        m_renewsAtField->setStringValue(vlr::localized("EXPIRED"));
        return;
    }
    const QString prefix = m_purchase->canceled() ? vlr::localized("Expires: ") : vlr::localized("Renews: ");
    m_renewsAtField->setStringValue(prefix + m_dateLocale.toString(m_purchase->renewsAt().date(), m_dateFormat));
}

void PurchaseViewController::manage()
{
    if (m_purchase)
        openManagePage(m_desktop, m_purchase->manageURL());
}

void PurchaseViewController::mouseEntered()
{
    if (m_manageButton)
        m_manageButton->show();
}

void PurchaseViewController::mouseExited()
{
    if (m_manageButton)
        m_manageButton->hide();
}

bool PurchaseViewController::event(QEvent* event)
{
    if (event->type() == QEvent::Enter)
        mouseEntered();
    else if (event->type() == QEvent::Leave)
        mouseExited();
    return RowViewController::event(event);
}

void PurchaseViewController::observeValueForKeyPath(const QString&, VLRObject*, const vlr::KeyValueChange&, void*)
{
    updateFields();
}
