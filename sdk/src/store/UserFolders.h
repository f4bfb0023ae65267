#pragma once

#include <QString>

// The user folder "~/Veluria/" into which downloads go, one sub-folder per
// workspace. A workspace whose name can't be a folder's name as it stands
// ("..", "a/b", a name too long) has its folder named after the safe form
// and its identifier, so that two such workspaces never share one.
class UserFolders
{
public:
    static QString root();
    static QString workspaceFolder(const QString& workspaceName, const QString& workspaceId);
};
