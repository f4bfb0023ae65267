#pragma once

#include "service/VLRUser.h"

// An account whose every field a test sets.
class FakeUser final : public VLRUser
{
public:
    using VLRUser::setAvatar;
    using VLRUser::setEmail;
    using VLRUser::setFirstName;
    using VLRUser::setLastName;
    using VLRUser::setNeedsConfirmation;
};
