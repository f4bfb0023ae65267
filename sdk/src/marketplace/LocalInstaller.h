#pragma once

#include "sdk/market/MarketSnapshot.h"

#include "service/VLRInstaller.h"

#include <memory>

class SessionMarketplace;

// An installer of the local catalogue. One record lives per identifier for
// as long as the session lists it, changed in place when the catalogue
// changes, so that the client's row for it sees the new revision and the
// installed version. Its operations go to the session's marketplace.
class LocalInstaller : public VLRInstaller
{
public:
    LocalInstaller(const QString& identifier, const std::weak_ptr<SessionMarketplace>& marketplace);

    using VLRInstaller::setCurrentRevision;
    using VLRInstaller::setDownloadOperation;
    using VLRInstaller::setFirstProduct;
    using VLRInstaller::setImage;
    using VLRInstaller::setImageURL;
    using VLRInstaller::setInstalledVersionString;
    using VLRInstaller::setInstallOperation;
    using VLRInstaller::setName;
    using VLRInstaller::setOverallOperation;

    const QString& revisionId() const { return m_revisionId; }
    void setRevisionId(const QString& id) { m_revisionId = id; }
    const QString& installedRevisionId() const { return m_installedRevisionId; }
    void setInstalledRevisionId(const QString& id) { m_installedRevisionId = id; }
    const QByteArray& imageBytes() const { return m_imageBytes; }
    void setImageBytes(const QByteArray& bytes) { m_imageBytes = bytes; }
    // On this machine or another: the installer is no longer new to the user.
    bool installedAnywhere() const { return m_installedAnywhere; }
    void setInstalledAnywhere(bool value) { m_installedAnywhere = value; }

    VLRInstallerOperationPtr downloadAndInstallLatestRevision() override;
    // The same installer, at the same revision, installed in the same
    // version here.
    bool isEqualToInstaller(const VLRInstallerPtr& other) const override;
    void deleteFromServerWithCompletionHandler(const VLRErrorHandler& handler) override;
    void forgetLocalInstallWithCompletionHandler(const VLRErrorHandler& handler) override;
    void setInstallerFields(const QString& name, const QVariant& type, const QVariant& description,
                            const QVariant& platform, const QVariant& packageIdentifiers, const QList<QUrl>& fileURLs,
                            const QVariant& silentInstall, const QVariant& productIDs, const QUrl& imageURL,
                            const VLRInstallerHandler& completionHandler) override;

private:
    std::weak_ptr<SessionMarketplace> m_marketplace;
    QString m_revisionId;
    QString m_installedRevisionId;
    QByteArray m_imageBytes;
    bool m_installedAnywhere = false;
};

using LocalInstallerPtr = std::shared_ptr<LocalInstaller>;
