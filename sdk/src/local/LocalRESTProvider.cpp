#include "sdk/local/LocalRESTProvider.h"

#include "service/VLRUserSession.h"

void LocalRESTProvider::setUpdateSessionBlock(const VLRUpdateSessionBlock& block)
{
    m_updateSessionBlock = block;
}

void LocalRESTProvider::sessionDidChange(const VLRUserSessionPtr& session)
{
    m_session = session;
}
