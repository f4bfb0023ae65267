#pragma once

#include "WebSessions.h"

#include <QString>

class BlobStore;
class HttpConnection;

// The signed-in member's workspaces in the browser: the list of them, a
// workspace's page (its name, members and latest publications with their
// files), its assets (every file), and the files themselves. Someone who
// is not a member sees the same page as for a workspace that doesn't exist.
class WorkspacePages
{
public:
    static constexpr int latestPublications = 50;

    WorkspacePages(const WebSessions& sessions, const BlobStore& store);

    // False when the path is none of these pages.
    bool handle(HttpConnection* c, const QString& path);

private:
    void index(HttpConnection* c, const WebSessions::Session& session);
    void workspace(HttpConnection* c, const WebSessions::Session& session, const QString& workspaceId,
                   const QString& name);
    void assets(HttpConnection* c, const WebSessions::Session& session, const QString& workspaceId,
                const QString& name);
    void file(HttpConnection* c, const WebSessions::Session& session, const QString& workspaceId,
              const QString& revisionId);

    const WebSessions& m_sessions;
    const BlobStore& m_store;
};
