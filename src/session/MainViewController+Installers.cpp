// Publishing an installer into the catalogue: the file and its description.

#include "session/MainViewController.h"

#include "service/VLRInstaller.h"
#include "service/VLRUserSession.h"
#include "session/InstallerDescription.h"

void MainViewController::uploadInstallerWithDescription(const QUrl& fileURL, const QByteArray& json,
                                                        const VLRErrorHandler& completionHandler)
{
    vlr::OptionalError error;
    const QVariantMap dictionary = InstallerDescription::dictionaryFromJSON(json, &error);
    if (error) {
        if (completionHandler)
            completionHandler(error);
        return;
    }
    uploadInstallerAtFileURLJSONDictionaryCompletionHandler(fileURL, dictionary, completionHandler);
}

void MainViewController::uploadInstallerAtFileURLJSONDictionaryCompletionHandler(
    const QUrl& fileURL, const QVariantMap& dictionary, const VLRErrorHandler& completionHandler)
{
    if (!m_userSession)
        return;
    const QString name = dictionary.value(QStringLiteral("name")).toString();
    VLRInstallerPtr existing;
    for (const VLRInstallerPtr& installer : m_userSession->installers())
        if (installer && installer->name() == name) {
            existing = installer;
            break;
        }

    QList<QUrl> fileURLs;
    for (const QVariant& path : dictionary.value(QStringLiteral("file_urls")).toList()) {
        const QUrl url = QUrl::fromLocalFile(path.toString());
        if (!url.isEmpty())
            fileURLs.append(url);
    }
    const QVariant type = dictionary.value(QStringLiteral("type"));
    const QVariant description = dictionary.value(QStringLiteral("description"));
    const QVariant platform = dictionary.value(QStringLiteral("platform"));
    const QVariant packageIdentifiers = dictionary.value(QStringLiteral("package_identifiers"));
    const QVariant silentInstall = dictionary.value(QStringLiteral("silent_install"));
    const QVariant productIDs = dictionary.value(QStringLiteral("product_urls"));
    const QUrl imageURL(dictionary.value(QStringLiteral("image_url")).toString());

    const VLRUserSessionPtr session = m_userSession;
    const VLRInstallerHandler published = [session, fileURL, dictionary, completionHandler](
                                              const VLRInstallerPtr& installer, const vlr::OptionalError& error) {
        vlr::OptionalError outcome = error;
        if (!outcome)
            session->uploadAndPublishNewInstaller(fileURL, installer ? installer->identifier() : QString(), dictionary,
                                                  &outcome);
        if (completionHandler)
            completionHandler(outcome);
    };
    // An existing installer gets "silent_install" as the value it is, a new
    // one its truth: the service has always taken them so.
    if (existing)
        existing->setInstallerFields(name, type, description, platform, packageIdentifiers, fileURLs, silentInstall,
                                     productIDs, imageURL, published);
    else
        m_userSession->createNewInstallerWithName(name, type, description, platform, packageIdentifiers, fileURLs,
                                                  silentInstall.toBool(), productIDs, imageURL, published);
}
