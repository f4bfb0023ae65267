#pragma once

#include "sdk/workspaces/WorkspaceStore.h"

#include "service/VLRWorkspace.h"

// A workspace of the local service. It has no web page: "opening it in the
// browser" opens its folder under ~/Veluria/, where its downloads go.
class LocalWorkspace : public VLRWorkspace
{
public:
    explicit LocalWorkspace(const WorkspaceStore::Workspace& snapshot);

    // Takes the newer state of the same workspace; false when nothing that
    // the list shows changed.
    bool update(const WorkspaceStore::Workspace& snapshot);
    void openInBrowser(bool assets) override;

private:
    static VLRWorkspaceUserList membersOf(const WorkspaceStore::Workspace& snapshot);
    static bool sameMembers(const VLRWorkspaceUserList& a, const VLRWorkspaceUserList& b);
};
