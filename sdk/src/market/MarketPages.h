#pragma once

#include <QUrl>

// The local service has no shop on the web: the page that manages a
// purchase, which its "manage" button and a card warning open in the
// browser, is a small file written beside the database. It says what the
// purchase is and how whoever runs the service changes it.
class MarketPages
{
public:
    // Written when its content changed; a null URL when it can't be.
    static QUrl managePage(const QString& databaseFolder, const QString& purchaseId, const QString& productName,
                           qint64 renewsAt, bool canceled, qint64 ccExpiresOn);
};
