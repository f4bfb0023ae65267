#pragma once

#include "service/VLRPublication.h"

// A new publication as the library announces it.
class LocalPublication final : public VLRPublication
{
public:
    using VLRPublication::setUserID;
    using VLRPublication::setUserFirstName;
    using VLRPublication::setUserEmail;
    using VLRPublication::setProjectName;
    using VLRPublication::setText;
};
