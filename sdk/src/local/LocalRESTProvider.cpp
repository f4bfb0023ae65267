#include "sdk/local/LocalRESTProvider.h"

#include "sdk/base/MainThread.h"
#include "sdk/local/LocalUserSession.h"

#include "service/VLRUserSession.h"

void LocalRESTProvider::setUpdateSessionBlock(const VLRUpdateSessionBlock& block)
{
    m_updateSessionBlock = block;
}

void LocalRESTProvider::sessionDidChange(const VLRUserSessionPtr& session)
{
    m_session = session;
    // The client reads the marketplace's groups before its installers when
    // it binds, so groups delivered before the binding come out short on its
    // side: they are told again once the binding is done.
    if (const auto local = std::dynamic_pointer_cast<LocalUserSession>(session))
        MainThread::post([weak = std::weak_ptr<LocalUserSession>(local)] {
            if (const auto bound = weak.lock())
                bound->sessionWasBound();
        });
}
