#pragma once

#include "sdk/workspaces/WorkspaceStore.h"

#include "service/VLRObject.h"

// One file of a workspace, as the session's "projects" lists them.
class LocalProject : public VLRObject
{
public:
    explicit LocalProject(const WorkspaceStore::Asset& asset)
        : m_asset(asset)
    { }

    const QString& identifier() const { return m_asset.id; }
    const QString& name() const { return m_asset.name; }
    const QString& workspaceIdentifier() const { return m_asset.workspaceId; }
    qint64 latestRevision() const { return m_asset.latestRevision; }

private:
    WorkspaceStore::Asset m_asset;
};
