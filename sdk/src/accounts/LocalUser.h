#pragma once

#include "service/VLRUser.h"

// The signed-in account as the library fills it in.
class LocalUser final : public VLRUser
{
public:
    using VLRUser::setAvatar;
    using VLRUser::setEmail;
    using VLRUser::setFirstName;
    using VLRUser::setLastName;
    using VLRUser::setNeedsConfirmation;
};
