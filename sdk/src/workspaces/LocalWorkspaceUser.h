#pragma once

#include "service/VLRWorkspaceUser.h"

// A workspace member as the library fills it in.
class LocalWorkspaceUser final : public VLRWorkspaceUser
{
public:
    using VLRWorkspaceUser::setAvatar;
    using VLRWorkspaceUser::setFirstName;
    using VLRWorkspaceUser::setLastName;
    using VLRWorkspaceUser::setRole;
};
