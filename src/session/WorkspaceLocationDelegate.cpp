#include "session/WorkspaceLocationDelegate.h"

WorkspaceLocationDelegate::WorkspaceLocationDelegate(const VLRFolderValidationHandler& validationHandler,
                                                     const VLRFolderCompletionHandler& completionHandler)
    : m_validationHandler(validationHandler)
    , m_completionHandler(completionHandler)
{ }

void WorkspaceLocationDelegate::callCompletionHandlerWithURL(const QUrl& url)
{
    if (m_completionHandler)
        m_completionHandler(url);
}

bool WorkspaceLocationDelegate::panelValidateURL(QFileDialog*, const QUrl& url, vlr::OptionalError* error)
{
    return m_validationHandler ? m_validationHandler(url, error) : true;
}
