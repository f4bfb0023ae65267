#pragma once

#include <QString>

// The user folder "~/Veluria/" into which downloads go, one sub-folder per
// workspace.
class UserFolders
{
public:
    static QString root();
    static QString workspaceFolder(const QString& workspaceName);
};
