#pragma once

#include "service/VLRObject.h"

#include <QImage>

// The signed-in account. Only the avatar is observable.
class VLRUser : public VLRObject
{
public:
    // The key paths of the observable properties.
    struct Key
    {
        static constexpr QLatin1StringView avatar{"avatar"};
    };

    const QString& firstName() const { return m_firstName; }
    const QString& lastName() const { return m_lastName; }
    const QString& email() const { return m_email; }
    const QImage& avatar() const { return m_avatar; }
    bool needsConfirmation() const { return m_needsConfirmation; }

    QVariant valueForKey(const QString& key) const override;

protected:
    // Changed by the service library and the test double alone; their
    // subclasses publish these.
    void setFirstName(const QString& value) { m_firstName = value; }
    void setLastName(const QString& value) { m_lastName = value; }
    void setEmail(const QString& value) { m_email = value; }
    void setAvatar(const QImage& value) { changeValue(m_avatar, value, Key::avatar); }
    void setNeedsConfirmation(bool value) { m_needsConfirmation = value; }

private:
    QString m_firstName;
    QString m_lastName;
    QString m_email;
    QImage m_avatar;
    bool m_needsConfirmation = false;
};
