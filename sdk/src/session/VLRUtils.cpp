#include "service/VLRUtils.h"

#include "service/VLREnvironment.h"

#include "base/DatabaseLocation.h"
#include "base/MainThread.h"
#include "session/LocalHelpPages.h"

void VLRUtils::setDatabaseLocation(const QUrl& location)
{
    DatabaseLocation::set(location);
}

QUrl VLRUtils::databaseLocation()
{
    return DatabaseLocation::current();
}

QUrl VLRUtils::resetPasswordURL()
{
    if (VLREnvironment::environment() == VLREnvironment::DefaultEnvironment) {
        const QUrl page = LocalHelpPages::resetPasswordPage();
        if (!page.isEmpty())
            return page;
    }
    return QUrl(QStringLiteral("https://%1/users/password/new").arg(VLREnvironment::appHostname()));
}

void VLRUtils::getHelpURLWithCompletionHandler(const VLRURLHandler& handler)
{
    if (!handler)
        return;
    const QUrl page = VLREnvironment::environment() == VLREnvironment::DefaultEnvironment
                          ? LocalHelpPages::helpPage()
                          : QUrl(QStringLiteral("https://%1/help-center").arg(VLREnvironment::appHostname()));
    MainThread::post([handler, page] { handler(page, std::nullopt); });
}
