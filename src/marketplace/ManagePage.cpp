#include "marketplace/ManagePage.h"

#include "marketplace/MarketplaceLog.h"
#include "platform/VLRDesktopServices.h"

bool openManagePage(VLRDesktopServices* desktop, const QUrl& url)
{
    if (!desktop)
        return false;
    const QString scheme = url.scheme().toLower();
    if (scheme != QLatin1String("http") && scheme != QLatin1String("https")) {
        qCWarning(lcMarketplace) << "Not opening a manage page that is no web page:" << url.toDisplayString();
        return false;
    }
    return desktop->openURL(url);
}
