#pragma once

#include "service/VLRPublication.h"

// A publication whose every field a test sets.
class FakePublication final : public VLRPublication
{
public:
    using VLRPublication::setProjectName;
    using VLRPublication::setText;
    using VLRPublication::setUserEmail;
    using VLRPublication::setUserFirstName;
    using VLRPublication::setUserID;
};
