#pragma once

#include "service/VLRObject.h"

#include <QImage>

// The signed-in account. Only the avatar is observable.
class VLRUser : public VLRObject
{
public:
    const QString& firstName() const { return m_firstName; }
    const QString& lastName() const { return m_lastName; }
    const QString& email() const { return m_email; }
    const QImage& avatar() const { return m_avatar; }
    bool needsConfirmation() const { return m_needsConfirmation; }

    void setFirstName(const QString& value) { m_firstName = value; }
    void setLastName(const QString& value) { m_lastName = value; }
    void setEmail(const QString& value) { m_email = value; }
    void setAvatar(const QImage& value) { changeValue(m_avatar, value, "avatar"); }
    void setNeedsConfirmation(bool value) { m_needsConfirmation = value; }

    QVariant valueForKey(const QString& key) const override;

private:
    QString m_firstName;
    QString m_lastName;
    QString m_email;
    QImage m_avatar;
    bool m_needsConfirmation = false;
};
