#include "sdk/workspaces/WorkspaceDirectory.h"

bool WorkspaceDirectory::apply(const QList<WorkspaceStore::Workspace>& snapshot)
{
    bool changed = snapshot.size() != m_list.size();
    VLRWorkspaceList list;
    list.reserve(snapshot.size());
    QHash<QString, std::shared_ptr<LocalWorkspace>> byId;
    byId.reserve(snapshot.size());
    for (const WorkspaceStore::Workspace& workspace : snapshot) {
        std::shared_ptr<LocalWorkspace> record = m_byId.value(workspace.id);
        if (record)
            changed = record->update(workspace) || changed;
        else
            record = std::make_shared<LocalWorkspace>(workspace);
        if (!changed && m_list.at(list.size()) != record)
            changed = true;
        list.append(record);
        byId.insert(workspace.id, record);
    }
    m_list = list;
    m_byId = byId;
    return changed;
}

std::shared_ptr<LocalWorkspace> WorkspaceDirectory::prepend(const WorkspaceStore::Workspace& snapshot)
{
    std::shared_ptr<LocalWorkspace> record = m_byId.value(snapshot.id);
    if (record) {
        record->update(snapshot);
        m_list.removeOne(record);
    } else {
        record = std::make_shared<LocalWorkspace>(snapshot);
        m_byId.insert(snapshot.id, record);
    }
    m_list.prepend(record);
    return record;
}
