#include "session/LocalRESTProvider.h"

#include "service/VLRUserSession.h"

VLRRESTProvider& VLRRESTProvider::sharedProvider()
{
    static LocalRESTProvider provider;
    return provider;
}

void LocalRESTProvider::setUpdateSessionBlock(const VLRUpdateSessionBlock& block)
{
    m_updateSessionBlock = block;
}

void LocalRESTProvider::sessionDidChange(const VLRUserSessionPtr& session)
{
    m_session = session;
}
