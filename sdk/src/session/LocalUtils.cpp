#include "session/LocalUtils.h"

#include "base/LocalEnvironment.h"

#include "base/DatabaseLocation.h"
#include "base/MainThread.h"
#include "session/LocalHelpPages.h"

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
