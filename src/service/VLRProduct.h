#pragma once

#include "service/VLRObject.h"
#include "service/VLRTypes.h"

#include <QImage>

class VLRProduct : public VLRObject
{
public:
    const QString& name() const { return m_name; }
    const QImage& image() const { return m_image; }
    const VLRVendorPtr& vendor() const { return m_vendor; }

    void setName(const QString& value) { changeValue(m_name, value, "name"); }
    void setImage(const QImage& value) { changeValue(m_image, value, "image"); }
    void setVendor(const VLRVendorPtr& value) { m_vendor = value; }

    QVariant valueForKey(const QString& key) const override;

private:
    QString m_name;
    QImage m_image;
    VLRVendorPtr m_vendor;
};
