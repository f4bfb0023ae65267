#pragma once

#include "service/VLRObject.h"

#include <QImage>

// A member of a workspace; role 1 is the owner.
class VLRWorkspaceUser : public VLRObject
{
public:
    // The key paths of the observable properties.
    struct Key
    {
        static constexpr QLatin1StringView avatar{"avatar"};
    };

    static constexpr qint64 OwnerRole = 1;

    const QImage& avatar() const { return m_avatar; }
    qint64 role() const { return m_role; }
    const QString& firstName() const { return m_firstName; }
    const QString& lastName() const { return m_lastName; }

    QVariant valueForKey(const QString& key) const override;

protected:
    // Changed by the service library and the test double alone; their
    // subclasses publish these.
    void setAvatar(const QImage& value) { changeValue(m_avatar, value, Key::avatar); }
    void setRole(qint64 value) { m_role = value; }
    void setFirstName(const QString& value) { m_firstName = value; }
    void setLastName(const QString& value) { m_lastName = value; }

private:
    QImage m_avatar;
    qint64 m_role = 0;
    QString m_firstName;
    QString m_lastName;
};
