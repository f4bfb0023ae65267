#pragma once

#include "service/VLRObject.h"

class VLRVendor : public VLRObject
{
public:
    const QString& name() const { return m_name; }
    void setName(const QString& value) { changeValue(m_name, value, "name"); }

    QVariant valueForKey(const QString& key) const override;

private:
    QString m_name;
};
