#include "service/VLRException.h"

namespace vlr {

Exception::Exception(QString name, QString reason, QVariantMap userInfo)
    : m_name(std::move(name))
    , m_reason(std::move(reason))
    , m_userInfo(std::move(userInfo))
    , m_what((m_name + QStringLiteral(": ") + m_reason).toUtf8())
{ }

} // namespace vlr
