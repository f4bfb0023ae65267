#include "fakes/FakeInstaller.h"

std::shared_ptr<FakeInstaller> FakeInstaller::make(const QString& identifier, const QString& name)
{
    auto installer = std::make_shared<FakeInstaller>();
    installer->setIdentifier(identifier);
    installer->setName(name);
    return installer;
}

VLRInstallerOperationPtr FakeInstaller::downloadAndInstallLatestRevision()
{
    log.record(QStringLiteral("downloadAndInstallLatestRevision"));
    return nextOperation;
}

bool FakeInstaller::isEqualToInstaller(const VLRInstallerPtr& other) const
{
    return other.get() == this || equalInstallers.contains(other);
}

void FakeInstaller::deleteFromServerWithCompletionHandler(const VLRErrorHandler& handler)
{
    log.record(QStringLiteral("deleteFromServerWithCompletionHandler"));
    deleteHandlers.add(handler);
}

void FakeInstaller::forgetLocalInstallWithCompletionHandler(const VLRErrorHandler& handler)
{
    log.record(QStringLiteral("forgetLocalInstallWithCompletionHandler"));
    forgetHandlers.add(handler);
}

void FakeInstaller::setInstallerFields(const QString& name, const QVariant& type, const QVariant& description,
                                       const QVariant& platform, const QVariant& packageIdentifiers,
                                       const QList<QUrl>& fileURLs, const QVariant& silentInstall,
                                       const QVariant& productIDs, const QUrl& imageURL,
                                       const VLRInstallerHandler& completionHandler)
{
    QVariantList urls;
    for (const QUrl& url : fileURLs)
        urls.append(url);
    log.record(QStringLiteral("setInstallerFields"),
               {name, type, description, platform, packageIdentifiers, urls, silentInstall, productIDs, imageURL});
    setFieldsHandlers.add(completionHandler);
}
