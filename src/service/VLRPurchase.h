#pragma once

#include "service/VLRObject.h"
#include "service/VLRTypes.h"

#include <QDateTime>
#include <QUrl>

// A subscription to a product; "renewsAt" is observable.
class VLRPurchase : public VLRObject
{
public:
    // The key paths of the observable properties.
    struct Key
    {
        static constexpr QLatin1StringView renewsAt{"renewsAt"};
    };

    static inline const QString CreditCardPaymentType = QStringLiteral("credit_card");

    const VLRProductPtr& product() const { return m_product; }
    const QDateTime& renewsAt() const { return m_renewsAt; }
    bool canceled() const { return m_canceled; }
    const QString& paymentType() const { return m_paymentType; }
    const QDateTime& ccExpiresOn() const { return m_ccExpiresOn; }
    const QUrl& manageURL() const { return m_manageURL; }

    QVariant valueForKey(const QString& key) const override;

protected:
    // Changed by the service library and the test double alone; their
    // subclasses publish these.
    void setProduct(const VLRProductPtr& value) { m_product = value; }
    void setRenewsAt(const QDateTime& value) { changeValue(m_renewsAt, value, Key::renewsAt); }
    void setCanceled(bool value) { m_canceled = value; }
    void setPaymentType(const QString& value) { m_paymentType = value; }
    void setCcExpiresOn(const QDateTime& value) { m_ccExpiresOn = value; }
    void setManageURL(const QUrl& value) { m_manageURL = value; }

private:
    VLRProductPtr m_product;
    QDateTime m_renewsAt;
    bool m_canceled = false;
    QString m_paymentType;
    QDateTime m_ccExpiresOn;
    QUrl m_manageURL;
};
