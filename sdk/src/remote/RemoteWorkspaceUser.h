#pragma once

#include "service/VLRWorkspaceUser.h"

// A member of a workspace on a team server; the account's identifier says
// whose avatar it shows.
class RemoteWorkspaceUser final : public VLRWorkspaceUser
{
public:
    explicit RemoteWorkspaceUser(const QString& userId)
        : m_userId(userId)
    { }

    const QString& userId() const { return m_userId; }

    using VLRWorkspaceUser::setAvatar;
    using VLRWorkspaceUser::setFirstName;
    using VLRWorkspaceUser::setLastName;
    using VLRWorkspaceUser::setRole;

private:
    QString m_userId;
};
