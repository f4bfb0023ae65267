#pragma once

#include "service/VLRRevision.h"

class FakeRevision final : public VLRRevision
{
public:
    using VLRRevision::setVersionDisplay;
};
