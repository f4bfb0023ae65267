#pragma once

#include <QString>

// An address and password handed to the library whole at sign-in.
class VLRLoginCredentials
{
public:
    VLRLoginCredentials(const QString& email, const QString& password)
        : m_email(email)
        , m_password(password)
    { }

    const QString& email() const { return m_email; }
    const QString& password() const { return m_password; }

private:
    QString m_email;
    QString m_password;
};
