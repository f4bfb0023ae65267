#include "sdk/market/MarketPages.h"

#include "sdk/base/Clock.h"
#include "sdk/base/PrivateFiles.h"
#include "sdk/store/SafeName.h"

namespace {

QString day(qint64 ms)
{
    return Clock::toDateTime(ms).toLocalTime().date().toString(Qt::ISODate);
}

} // namespace

QUrl MarketPages::managePage(const QString& databaseFolder, const QString& purchaseId, const QString& productName,
                             qint64 renewsAt, bool canceled, qint64 ccExpiresOn)
{
    const QString folder = databaseFolder + QStringLiteral("/Pages");
    if (databaseFolder.isEmpty() || SafeName::component(purchaseId) != purchaseId || !PrivateFiles::makeFolder(folder))
        return {};
    const QString product = productName.toHtmlEscaped();
    const QString card =
        ccExpiresOn ? QStringLiteral("<p>The card on file expires on %1.</p>").arg(day(ccExpiresOn)) : QString();
    const QByteArray page =
        QStringLiteral("<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>%1</title></head><body>"
                       "<h1>Your purchase of %1</h1><p>%2 on %3.</p>%4"
                       "<h2>Change the purchase or the card</h2>"
                       "<p>Purchases of the local Veluria service are kept by whoever runs it, with "
                       "<code>veluria-admin grant-purchase EMAIL PRODUCT --renews DATE [--canceled] "
                       "[--card-expires DATE]</code>. Ask them to renew, cancel, or enter the new card's expiry date; "
                       "Veluria shows the change at once.</p></body></html>\n")
            .arg(product, canceled ? QStringLiteral("It expires") : QStringLiteral("It renews"), day(renewsAt), card)
            .toUtf8();
    const QString path = folder + QStringLiteral("/purchase-%1.html").arg(purchaseId);
    return PrivateFiles::writeUnlessSame(path, page) ? QUrl::fromLocalFile(path) : QUrl();
}
