#pragma once

#include "service/VLRRESTProvider.h"

#include <memory>

// The library's side of the session hand-over: it keeps the client's block
// and hears which session the client holds. Nothing in the embedded service
// hands the client a session of its own; the local REST server that will do
// so is not part of this build.
class LocalRESTProvider : public VLRRESTProvider
{
public:
    void setUpdateSessionBlock(const VLRUpdateSessionBlock& block) override;
    void sessionDidChange(const VLRUserSessionPtr& session) override;

private:
    VLRUpdateSessionBlock m_updateSessionBlock;
    std::weak_ptr<VLRUserSession> m_session;
};
