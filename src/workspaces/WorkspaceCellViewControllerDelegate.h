#pragma once

#include <QStringList>

class WorkspaceCellViewController;

class WorkspaceCellViewControllerDelegate
{
public:
    virtual ~WorkspaceCellViewControllerDelegate() = default;
    virtual void workspaceCellViewControllerWasClicked(WorkspaceCellViewController* cell) = 0;
    virtual void workspaceCellViewControllerDidReceiveFiles(WorkspaceCellViewController* cell,
                                                            const QStringList& files) = 0;
};
