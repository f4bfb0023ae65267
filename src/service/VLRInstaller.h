#pragma once

#include "service/VLRObject.h"
#include "service/VLRTypes.h"

#include <QImage>
#include <QUrl>

using VLRInstallerHandler = std::function<void(const VLRInstallerPtr& installer, const vlr::OptionalError& error)>;

// One piece of marketplace software. "image" and "installedVersionString" are
// observable.
class VLRInstaller : public VLRObject
{
public:
    // The key paths of the observable properties.
    struct Key
    {
        static constexpr QLatin1StringView image{"image"};
        static constexpr QLatin1StringView installedVersionString{"installedVersionString"};
    };

    const QString& identifier() const { return m_identifier; }
    const QString& name() const { return m_name; }
    const QImage& image() const { return m_image; }
    const QUrl& imageURL() const { return m_imageURL; }
    const VLRProductPtr& firstProduct() const { return m_firstProduct; }
    const VLRRevisionPtr& currentRevision() const { return m_currentRevision; }
    // Null when the installer is not on this machine.
    const QString& installedVersionString() const { return m_installedVersionString; }
    const VLRInstallerOperationPtr& downloadOperation() const { return m_downloadOperation; }
    const VLRInstallerOperationPtr& installOperation() const { return m_installOperation; }
    const VLRInstallerOperationPtr& overallOperation() const { return m_overallOperation; }

    // Starts download and installation; nil when nothing could be started.
    virtual VLRInstallerOperationPtr downloadAndInstallLatestRevision() = 0;
    virtual bool isEqualToInstaller(const VLRInstallerPtr& other) const = 0;
    virtual void deleteFromServerWithCompletionHandler(const VLRErrorHandler& handler) = 0;
    virtual void forgetLocalInstallWithCompletionHandler(const VLRErrorHandler& handler) = 0;
    virtual void setInstallerFields(const QString& name, const QVariant& type, const QVariant& description,
                                    const QVariant& platform, const QVariant& packageIdentifiers,
                                    const QList<QUrl>& fileURLs, const QVariant& silentInstall,
                                    const QVariant& productIDs, const QUrl& imageURL,
                                    const VLRInstallerHandler& completionHandler) = 0;

    QVariant valueForKey(const QString& key) const override;

protected:
    // Changed by the service library and the test double alone; their
    // subclasses publish these.
    void setIdentifier(const QString& value) { m_identifier = value; }
    void setName(const QString& value) { m_name = value; }
    void setImage(const QImage& value) { changeValue(m_image, value, Key::image); }
    void setImageURL(const QUrl& value) { m_imageURL = value; }
    void setFirstProduct(const VLRProductPtr& value) { m_firstProduct = value; }
    void setCurrentRevision(const VLRRevisionPtr& value) { m_currentRevision = value; }
    void setInstalledVersionString(const QString& value)
    {
        changeValue(m_installedVersionString, value, Key::installedVersionString);
    }
    void setDownloadOperation(const VLRInstallerOperationPtr& value) { m_downloadOperation = value; }
    void setInstallOperation(const VLRInstallerOperationPtr& value) { m_installOperation = value; }
    void setOverallOperation(const VLRInstallerOperationPtr& value) { m_overallOperation = value; }

private:
    QString m_identifier;
    QString m_name;
    QImage m_image;
    QUrl m_imageURL;
    VLRProductPtr m_firstProduct;
    VLRRevisionPtr m_currentRevision;
    QString m_installedVersionString;
    VLRInstallerOperationPtr m_downloadOperation;
    VLRInstallerOperationPtr m_installOperation;
    VLRInstallerOperationPtr m_overallOperation;
};
