#include "sdk/local/LocalUtils.h"

#include "sdk/base/LocalEnvironment.h"

#include "sdk/base/DatabaseLocation.h"
#include "sdk/base/MainThread.h"
#include "sdk/local/LocalHelpPages.h"

void LocalUtils::setDatabaseLocation(const QUrl& location)
{
    DatabaseLocation::set(location);
}

QUrl LocalUtils::databaseLocation()
{
    return DatabaseLocation::current();
}

QUrl LocalUtils::resetPasswordURL()
{
    if (LocalEnvironment().environment() == VLREnvironment::DefaultEnvironment) {
        const QUrl page = LocalHelpPages::resetPasswordPage();
        if (!page.isEmpty())
            return page;
    }
    return QUrl(QStringLiteral("https://%1/users/password/new").arg(LocalEnvironment().appHostname()));
}

void LocalUtils::getHelpURLWithCompletionHandler(const VLRURLHandler& handler)
{
    if (!handler)
        return;
    const QUrl page = LocalEnvironment().environment() == VLREnvironment::DefaultEnvironment
        ? LocalHelpPages::helpPage()
        : QUrl(QStringLiteral("https://%1/help-center").arg(LocalEnvironment().appHostname()));
    MainThread::post([handler, page] { handler(page, std::nullopt); });
}
