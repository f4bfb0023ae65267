#pragma once

#include "service/VLRWorkspaceUser.h"

#include <memory>

// A member of a workspace whose every field a test sets.
class FakeWorkspaceUser final : public VLRWorkspaceUser
{
public:
    using VLRWorkspaceUser::setAvatar;
    using VLRWorkspaceUser::setFirstName;
    using VLRWorkspaceUser::setLastName;
    using VLRWorkspaceUser::setRole;

    static std::shared_ptr<FakeWorkspaceUser> make(const QString& firstName, const QString& lastName, qint64 role = 0)
    {
        auto user = std::make_shared<FakeWorkspaceUser>();
        user->setFirstName(firstName);
        user->setLastName(lastName);
        user->setRole(role);
        return user;
    }
};
