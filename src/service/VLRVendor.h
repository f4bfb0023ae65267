#pragma once

#include "service/VLRObject.h"

class VLRVendor : public VLRObject
{
public:
    // The key paths of the observable properties.
    struct Key
    {
        static constexpr QLatin1StringView name{"name"};
    };

    const QString& name() const { return m_name; }

    QVariant valueForKey(const QString& key) const override;

protected:
    // Changed by the service library and the test double alone; their
    // subclasses publish these.
    void setName(const QString& value) { changeValue(m_name, value, Key::name); }

private:
    QString m_name;
};
