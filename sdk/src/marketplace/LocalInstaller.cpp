#include "sdk/marketplace/LocalInstaller.h"

#include "sdk/marketplace/SessionMarketplace.h"

LocalInstaller::LocalInstaller(const QString& identifier, const std::weak_ptr<SessionMarketplace>& marketplace)
    : m_marketplace(marketplace)
{
    setIdentifier(identifier);
}

VLRInstallerOperationPtr LocalInstaller::downloadAndInstallLatestRevision()
{
    const auto marketplace = m_marketplace.lock();
    return marketplace ? marketplace->downloadAndInstall(std::static_pointer_cast<LocalInstaller>(shared_from_this()))
                       : nullptr;
}

bool LocalInstaller::isEqualToInstaller(const VLRInstallerPtr& other) const
{
    const auto* local = dynamic_cast<const LocalInstaller*>(other.get());
    return local && local->identifier() == identifier() && local->m_revisionId == m_revisionId
        && local->installedVersionString() == installedVersionString();
}

void LocalInstaller::deleteFromServerWithCompletionHandler(const VLRErrorHandler& handler)
{
    if (const auto marketplace = m_marketplace.lock())
        marketplace->deleteInstaller(std::static_pointer_cast<LocalInstaller>(shared_from_this()), handler);
}

void LocalInstaller::forgetLocalInstallWithCompletionHandler(const VLRErrorHandler& handler)
{
    if (const auto marketplace = m_marketplace.lock())
        marketplace->forgetInstall(std::static_pointer_cast<LocalInstaller>(shared_from_this()), handler);
}

void LocalInstaller::setInstallerFields(const QString& name, const QVariant& type, const QVariant& description,
                                        const QVariant& platform, const QVariant& packageIdentifiers,
                                        const QList<QUrl>& fileURLs, const QVariant& silentInstall,
                                        const QVariant& productIDs, const QUrl& imageURL,
                                        const VLRInstallerHandler& completionHandler)
{
    if (const auto marketplace = m_marketplace.lock())
        marketplace->saveInstaller(identifier(), name, type, description, platform, packageIdentifiers, fileURLs,
                                   silentInstall.toBool(), productIDs, imageURL, completionHandler);
}
