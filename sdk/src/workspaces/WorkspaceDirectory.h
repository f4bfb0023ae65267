#pragma once

#include "sdk/workspaces/LocalWorkspace.h"

#include "service/VLRTypes.h"

#include <QHash>

// The session's workspace records, kept across reloads so that the client's
// references stay good: a reload updates the records in place and tells
// whether the list as shown changed.
class WorkspaceDirectory
{
public:
    // False when the list is the same as before.
    bool apply(const QList<WorkspaceStore::Workspace>& snapshot);
    // Puts a workspace just made at the head of the list.
    std::shared_ptr<LocalWorkspace> prepend(const WorkspaceStore::Workspace& snapshot);

    const VLRWorkspaceList& list() const { return m_list; }
    std::shared_ptr<LocalWorkspace> find(const QString& identifier) const { return m_byId.value(identifier); }

private:
    VLRWorkspaceList m_list;
    QHash<QString, std::shared_ptr<LocalWorkspace>> m_byId;
};
