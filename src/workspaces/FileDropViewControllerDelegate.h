#pragma once

#include "service/VLRTypes.h"

#include <QStringList>

#include <optional>

class FileDropPage;

class FileDropViewControllerDelegate
{
public:
    virtual ~FileDropViewControllerDelegate() = default;
    // Paths are nil (nullopt) for a publication of the comment alone. The
    // handler may be empty.
    virtual void fileDropViewControllerUploadedFiles(FileDropPage* controller,
                                                     const std::optional<QStringList>& uploadedFiles,
                                                     const VLRWorkspacePtr& toWorkspace, const QString& withComment,
                                                     bool publish, const VLRErrorHandler& completionHandler) = 0;
    virtual void fileDropViewControllerCreatedWorkspaceNamed(FileDropPage* controller,
                                                             const QString& createdWorkspaceNamed,
                                                             const std::optional<QStringList>& withFiles,
                                                             const QString& comment,
                                                             const VLRErrorHandler& completionHandler) = 0;
    virtual void fileDropViewControllerWantsPopUpToggled(FileDropPage* controller) = 0;
    virtual bool fileDropViewControllerEmailNeedsConfirmation() = 0;
    virtual bool fileDropViewControllerLoading() = 0;
};
