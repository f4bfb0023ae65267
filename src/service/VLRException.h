#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include <exception>

namespace vlr {

// Raised only for faults of the program itself, never for service failures.
class Exception : public std::exception
{
public:
    Exception(QString name, QString reason, QVariantMap userInfo = {});

    const QString& name() const { return m_name; }
    const QString& reason() const { return m_reason; }
    const QVariantMap& userInfo() const { return m_userInfo; }
    const char* what() const noexcept override { return m_what.constData(); }

private:
    QString m_name;
    QString m_reason;
    QVariantMap m_userInfo;
    QByteArray m_what;
};

} // namespace vlr
