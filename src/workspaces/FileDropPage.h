#pragma once

#include "service/VLRTypes.h"

#include <QStringList>

class QWidget;
class FileDropViewControllerDelegate;

// The file drop tab as its owner drives it.
class FileDropPage
{
public:
    virtual ~FileDropPage() = default;
    virtual QWidget* view() = 0;
    virtual void setDelegate(FileDropViewControllerDelegate* delegate) = 0;

    virtual void updateWorkspaces(const VLRWorkspaceList& workspaces) = 0;
    virtual void updateState() = 0;
    virtual void updateFiles(const QStringList& files) = 0;
    virtual void selectWorkspace(const VLRWorkspacePtr& workspace) = 0;
    virtual void clearFields() = 0;
    virtual void refreshButtonState() = 0;
};
