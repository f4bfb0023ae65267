#pragma once

#include "service/VLRTypes.h"

#include <QStringList>

class WorkspacesPage;

class WorkspacesViewControllerDelegate
{
public:
    virtual ~WorkspacesViewControllerDelegate() = default;
    virtual void workspaceViewControllerHadCellClicked(WorkspacesPage* controller) = 0;
    virtual void workspaceViewControllerDidReceiveFiles(WorkspacesPage* controller, const QStringList& files,
                                                        const VLRWorkspacePtr& forWorkspace) = 0;
    virtual void workspaceViewControllerCreateWorkspaceClicked() = 0;
    virtual bool workspaceViewControllerEmailNeedsConfirmation() = 0;
    virtual bool workspaceViewControllerLoading() = 0;
};
