#pragma once

#include "service/VLRError.h"
#include "service/VLRTypes.h"

#include <QString>
#include <QUrl>

#include <functional>

using VLRFolderValidationHandler = std::function<bool(const QUrl& url, vlr::OptionalError* error)>;
using VLRFolderCompletionHandler = std::function<void(const QUrl& url)>;

// How a session calls back into the client.
class VLRUserSessionDelegate
{
public:
    virtual ~VLRUserSessionDelegate() = default;

    virtual void passwordChanged() = 0;
    virtual void downstreamProxyUnavailable() = 0;
    virtual void currentVersionIsUnsupported() = 0;
    virtual void clientKeyExpired() = 0;
    // The library needs a folder from the user; the completion gets a null URL
    // when the user cancels.
    virtual void getFolderURLFromUser(const QString& title, const QUrl& baseURL,
                                      const VLRFolderValidationHandler& validationHandler,
                                      const VLRFolderCompletionHandler& completionHandler) = 0;
    virtual void workspace(const VLRWorkspacePtr& workspace, const VLRPublicationList& hasNewPublications) = 0;
};
