#include "sdk/remote/VeluriaServiceLibrary.h"

#include "sdk/base/LibrarySettings.h"
#include "sdk/base/MainThread.h"
#include "sdk/local/LocalSignIn.h"
#include "sdk/remote/RemoteError.h"
#include "sdk/remote/RemoteSignIn.h"
#include "sdk/versions/LocalVersionChecker.h"

std::shared_ptr<VLRVersionChecker> VeluriaServiceLibrary::createVersionChecker()
{
    // A manifest named in the library's settings wins; else a team server's,
    // which may publish none.
    const QUrl configured = LibrarySettings::versionManifest();
    const RemoteEndpoint server = RemoteEnvironment::chosenServer();
    if (configured.isEmpty() && server.isValid())
        return std::make_shared<LocalVersionChecker>(server.apiUrl(QStringLiteral("manifest")),
                                                     server.sslConfiguration(), true);
    return m_embedded.createVersionChecker();
}

void VeluriaServiceLibrary::createUserSessionWithLoginCredentials(const VLRLoginCredentials& credentials,
                                                                  const QString& apiKey, bool supportsMarketplace,
                                                                  const VLRSignInHandler& completionHandler)
{
    if (m_environment.environment() == VLREnvironment::DefaultEnvironment || apiKey != LocalSignIn::clientKey)
        return m_embedded.createUserSessionWithLoginCredentials(credentials, apiKey, supportsMarketplace,
                                                                completionHandler);
    QString failure;
    const RemoteEndpoint server = RemoteEndpoint::fromSettings(&failure);
    if (!failure.isEmpty()) {
        const vlr::Error error = RemoteError::make(RemoteError::BadSettings, failure);
        if (completionHandler)
            MainThread::post([completionHandler, error] { completionHandler(nullptr, nullptr, error); });
        return;
    }
    // A domain that names no configured server is refused as before.
    if (!server.isValid() || server.domainName() != m_environment.domainName())
        return m_embedded.createUserSessionWithLoginCredentials(credentials, apiKey, supportsMarketplace,
                                                                completionHandler);
    RemoteSignIn::start(server, credentials, completionHandler);
}
