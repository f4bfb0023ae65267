#pragma once

#include "service/VLRPublication.h"

// A new publication as the library announces it.
class LocalPublication final : public VLRPublication
{
public:
    using VLRPublication::setProjectName;
    using VLRPublication::setText;
    using VLRPublication::setUserEmail;
    using VLRPublication::setUserFirstName;
    using VLRPublication::setUserID;
};
