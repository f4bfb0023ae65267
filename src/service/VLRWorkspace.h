#pragma once

#include "service/VLRObject.h"
#include "service/VLRTypes.h"

#include <QDateTime>

// A shared workspace. Its members are observable; opening it in the browser
// is the library's business.
class VLRWorkspace : public VLRObject
{
public:
    // The key paths of the observable properties.
    struct Key
    {
        static constexpr QLatin1StringView workspaceUsers{"workspaceUsers"};
    };

    const QString& identifier() const { return m_identifier; }
    const QString& name() const { return m_name; }
    const QDateTime& updatedAt() const { return m_updatedAt; }
    const VLRWorkspaceUserList& workspaceUsers() const { return m_workspaceUsers; }

    // Opens the workspace's page in the browser; true opens its assets page.
    virtual void openInBrowser(bool assets) = 0;

    QVariant valueForKey(const QString& key) const override;

protected:
    // Changed by the service library and the test double alone; their
    // subclasses publish these.
    void setIdentifier(const QString& value) { m_identifier = value; }
    void setName(const QString& value) { m_name = value; }
    void setUpdatedAt(const QDateTime& value) { m_updatedAt = value; }
    void setWorkspaceUsers(const VLRWorkspaceUserList& value)
    {
        changeValue(m_workspaceUsers, value, Key::workspaceUsers);
    }

private:
    QString m_identifier;
    QString m_name;
    QDateTime m_updatedAt;
    VLRWorkspaceUserList m_workspaceUsers;
};
