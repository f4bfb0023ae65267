#include "sdk/local/EmbeddedServiceLibrary.h"

#include "sdk/base/LibrarySettings.h"
#include "sdk/local/LocalSignIn.h"
#include "sdk/versions/LocalVersionChecker.h"

std::shared_ptr<VLRVersionChecker> EmbeddedServiceLibrary::createVersionChecker()
{
    return std::make_shared<LocalVersionChecker>(LibrarySettings::versionManifest());
}

void EmbeddedServiceLibrary::createUserSessionWithLoginCredentials(const VLRLoginCredentials& credentials,
                                                                   const QString& apiKey, bool,
                                                                   const VLRSignInHandler& completionHandler)
{
    LocalSignIn::start(credentials, apiKey, completionHandler);
}
