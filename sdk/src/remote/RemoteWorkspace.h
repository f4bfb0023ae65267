#pragma once

#include "sdk/net/RemoteEndpoint.h"

#include "service/VLRWorkspace.h"

// A workspace on a team server. Its page in the browser is the server's:
// the browser enters it signed in through a one-time link, or at the plain
// address (where it signs in by itself) when no link can be had.
class RemoteWorkspace final : public VLRWorkspace
{
public:
    RemoteWorkspace(const QString& identifier, const RemoteEndpoint& endpoint);

    using VLRWorkspace::setName;
    using VLRWorkspace::setUpdatedAt;
    using VLRWorkspace::setWorkspaceUsers;

    void openInBrowser(bool assets) override;

private:
    RemoteEndpoint m_endpoint;
};

using RemoteWorkspacePtr = std::shared_ptr<RemoteWorkspace>;
