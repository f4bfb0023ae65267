#pragma once

#include "service/VLRObject.h"

class VLRRevision : public VLRObject
{
public:
    // Null when the service gave no version text.
    const QString& versionDisplay() const { return m_versionDisplay; }

protected:
    // Changed by the service library and the test double alone; their
    // subclasses publish these.
    void setVersionDisplay(const QString& value) { m_versionDisplay = value; }

private:
    QString m_versionDisplay;
};
