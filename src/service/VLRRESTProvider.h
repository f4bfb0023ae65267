#pragma once

#include "service/VLRTypes.h"

#include <functional>

using VLRUpdateSessionBlock = std::function<void(const VLRUserSessionPtr& session)>;

// The library's local REST side, which may hand the client a session to hold
// and must hear of every session the client binds.
class VLRRESTProvider
{
public:
    virtual ~VLRRESTProvider() = default;
    virtual void setUpdateSessionBlock(const VLRUpdateSessionBlock& block) = 0;
    virtual void sessionDidChange(const VLRUserSessionPtr& session) = 0;
};
