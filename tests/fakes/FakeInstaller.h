#pragma once

#include "fakes/FakeCallLog.h"
#include "fakes/FakePending.h"
#include "service/VLRInstaller.h"
#include "service/VLRInstallerOperation.h"

#include <memory>

class FakeInstallerOperation : public VLRInstallerOperation
{
public:
    using VLRProgressReporting::setError;
    using VLRProgressReporting::setFinished;
    using VLRProgressReporting::setFractionCompleted;

    bool cancelled = false;

    void cancel() override { cancelled = true; }
    bool isCancelled() const override { return cancelled; }
};

class FakeInstaller : public VLRInstaller
{
public:
    using VLRInstaller::setCurrentRevision;
    using VLRInstaller::setDownloadOperation;
    using VLRInstaller::setFirstProduct;
    using VLRInstaller::setIdentifier;
    using VLRInstaller::setImage;
    using VLRInstaller::setImageURL;
    using VLRInstaller::setInstalledVersionString;
    using VLRInstaller::setInstallOperation;
    using VLRInstaller::setName;
    using VLRInstaller::setOverallOperation;

    static std::shared_ptr<FakeInstaller> make(const QString& identifier, const QString& name);

    FakeCallLog log;
    // What downloadAndInstallLatestRevision answers; may stay nil.
    VLRInstallerOperationPtr nextOperation;
    // Installers that isEqualToInstaller takes as unchanged, by identity.
    QList<VLRInstallerPtr> equalInstallers;
    FakePending<VLRErrorHandler> deleteHandlers;
    FakePending<VLRErrorHandler> forgetHandlers;
    FakePending<VLRInstallerHandler> setFieldsHandlers;

    VLRInstallerOperationPtr downloadAndInstallLatestRevision() override;
    bool isEqualToInstaller(const VLRInstallerPtr& other) const override;
    void deleteFromServerWithCompletionHandler(const VLRErrorHandler& handler) override;
    void forgetLocalInstallWithCompletionHandler(const VLRErrorHandler& handler) override;
    void setInstallerFields(const QString& name, const QVariant& type, const QVariant& description,
                            const QVariant& platform, const QVariant& packageIdentifiers, const QList<QUrl>& fileURLs,
                            const QVariant& silentInstall, const QVariant& productIDs, const QUrl& imageURL,
                            const VLRInstallerHandler& completionHandler) override;
};
