#pragma once

#include "service/VLRObject.h"

// One new publication in a workspace, as announced to the session's delegate.
class VLRPublication : public VLRObject
{
public:
    const QString& userID() const { return m_userID; }
    const QString& userFirstName() const { return m_userFirstName; }
    const QString& userEmail() const { return m_userEmail; }
    const QString& projectName() const { return m_projectName; }
    const QString& text() const { return m_text; }

protected:
    // Changed by the service library and the test double alone; their
    // subclasses publish these.
    void setUserID(const QString& value) { m_userID = value; }
    void setUserFirstName(const QString& value) { m_userFirstName = value; }
    void setUserEmail(const QString& value) { m_userEmail = value; }
    void setProjectName(const QString& value) { m_projectName = value; }
    void setText(const QString& value) { m_text = value; }

private:
    QString m_userID;
    QString m_userFirstName;
    QString m_userEmail;
    QString m_projectName;
    QString m_text;
};
