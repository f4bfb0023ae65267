#pragma once

#include "service/VLRRevision.h"

// One published file of an installer; a new revision is a new record.
class LocalRevision : public VLRRevision
{
public:
    LocalRevision(const QString& identifier, const QString& versionDisplay)
        : m_identifier(identifier)
    {
        setVersionDisplay(versionDisplay);
    }

    const QString& identifier() const { return m_identifier; }

private:
    QString m_identifier;
};
