#pragma once

#include "service/VLRObject.h"
#include "service/VLRTypes.h"

#include <QImage>

class VLRProduct : public VLRObject
{
public:
    // The key paths of the observable properties.
    struct Key
    {
        static constexpr QLatin1StringView name{"name"};
        static constexpr QLatin1StringView image{"image"};
    };

    const QString& name() const { return m_name; }
    const QImage& image() const { return m_image; }
    const VLRVendorPtr& vendor() const { return m_vendor; }

    QVariant valueForKey(const QString& key) const override;

protected:
    // Changed by the service library and the test double alone; their
    // subclasses publish these.
    void setName(const QString& value) { changeValue(m_name, value, Key::name); }
    void setImage(const QImage& value) { changeValue(m_image, value, Key::image); }
    void setVendor(const VLRVendorPtr& value) { m_vendor = value; }

private:
    QString m_name;
    QImage m_image;
    VLRVendorPtr m_vendor;
};
