#pragma once

#include "lists/RowViewController.h"
#include "service/VLRObject.h"
#include "service/VLRTypes.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRImageView.h"
#include "widgets/VLRTextField.h"
#include "widgets/VLRView.h"

#include <QDateTime>
#include <QLocale>
#include <QPointer>

#include <functional>

class VLRDesktopServices;

// One row of the purchases page: the product's name, vendor and picture, when
// the purchase renews or ran out, and, while the pointer is over it, a button
// that opens the purchase's page in the user's browser. Made anew with every
// delivery of purchases. GUI thread only.
class PurchaseViewController : public RowViewController, public VLRKeyValueObserver
{
    Q_OBJECT

public:
    // Observes the purchase and its product at once; builds no view. The
    // desktop is not owned; the clock tells "now" for the expiry test.
    PurchaseViewController(const VLRPurchasePtr& purchase, VLRDesktopServices* desktop,
                           std::function<QDateTime()> clock);
    ~PurchaseViewController() override;

    const VLRPurchasePtr& purchase() const { return m_purchase; }

    void manage();
    void mouseEntered();
    void mouseExited();

    VLRTextField* productNameField() const { return m_productNameField; }
    VLRTextField* renewsAtField() const { return m_renewsAtField; }
    VLRTextField* manufacturerField() const { return m_manufacturerField; }
    VLRImageView* productImageView() const { return m_productImageView; }
    VLRButton* manageButton() const { return m_manageButton; }

    void observeValueForKeyPath(const QString& keyPath, VLRObject* object, const vlr::KeyValueChange& change,
                                void* context) override;

protected:
    QWidget* loadView() override;
    void viewDidLoad() override;
    bool event(QEvent* event) override;

private:
    void updateFields();

    VLRPurchasePtr m_purchase;
    // The records observed, kept so that each observer leaves the object it
    // was added to.
    VLRProductPtr m_observedProduct;
    VLRVendorPtr m_observedVendor;
    VLRDesktopServices* m_desktop;
    std::function<QDateTime()> m_clock;
    // The long date style of the locale current at creation.
    QLocale m_dateLocale;
    QString m_dateFormat;

    QPointer<VLRView> m_backgroundView;
    QPointer<VLRView> m_backgroundBorderView;
    QPointer<VLRImageView> m_productImageView;
    QPointer<VLRTextField> m_productNameField;
    QPointer<VLRTextField> m_renewsAtField;
    QPointer<VLRTextField> m_manufacturerField;
    QPointer<VLRButton> m_manageButton;
};
