#pragma once

#include "service/VLRTypes.h"

class QWidget;
class WorkspacesViewControllerDelegate;

// The workspaces tab as its owner drives it.
class WorkspacesPage
{
public:
    virtual ~WorkspacesPage() = default;
    virtual QWidget* view() = 0;
    virtual void setDelegate(WorkspacesViewControllerDelegate* delegate) = 0;

    virtual void updateWorkspaces(const VLRWorkspaceList& workspaces) = 0;
    virtual void updateState() = 0;
};
