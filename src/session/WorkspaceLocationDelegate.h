#pragma once

#include "service/VLRUserSessionDelegate.h"

#include <QObject>

class QFileDialog;

// Answers the folder panel's questions with the library's two handlers.
class WorkspaceLocationDelegate : public QObject
{
    Q_OBJECT

public:
    WorkspaceLocationDelegate(const VLRFolderValidationHandler& validationHandler,
                              const VLRFolderCompletionHandler& completionHandler);

    void callCompletionHandlerWithURL(const QUrl& url);
    // The panel itself is not looked at; a script answers with none.
    bool panelValidateURL(QFileDialog* panel, const QUrl& url, vlr::OptionalError* error);

private:
    VLRFolderValidationHandler m_validationHandler;
    VLRFolderCompletionHandler m_completionHandler;
};
