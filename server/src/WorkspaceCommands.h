#pragma once

class AdminCommands;

// The administrative commands on workspaces: add-workspace, add-member,
// publish, comment, link and workspaces.
class WorkspaceCommands
{
public:
    static void addTo(AdminCommands& commands);
};
