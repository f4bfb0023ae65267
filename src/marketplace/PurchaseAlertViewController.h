#pragma once

#include "lists/RowViewController.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRImageView.h"
#include "widgets/VLRTextField.h"
#include "widgets/VLRView.h"

#include <QPointer>
#include <QUrl>

class VLRDesktopServices;

// The one warning row over the purchases: a credit card that has run out or
// is about to. Its type is fixed when it is made; it never reads the clock.
class PurchaseAlertViewController : public RowViewController
{
    Q_OBJECT

public:
    enum Type : qint64 {
        Expired = 0,
        // Any other value reads as about to expire.
        AboutToExpire = 1,
    };

    // The desktop is not owned.
    PurchaseAlertViewController(qint64 type, const QUrl& manageURL, VLRDesktopServices* desktop);

    qint64 type() const { return m_type; }
    const QUrl& manageUrl() const { return m_manageUrl; }

    // Opens the manage page in the user's browser.
    void onAlertButton();

    VLRView* backgroundView() const { return m_backgroundView; }
    VLRTextField* alertText() const { return m_alertText; }
    VLRButton* alertButton() const { return m_alertButton; }

protected:
    QWidget* loadView() override;

private:
    qint64 m_type;
    QUrl m_manageUrl;
    VLRDesktopServices* m_desktop;

    QPointer<VLRView> m_backgroundBorderView;
    QPointer<VLRView> m_backgroundView;
    QPointer<VLRImageView> m_warningImage;
    QPointer<VLRTextField> m_alertText;
    QPointer<VLRButton> m_alertButton;
};
