#include "sdk/workspaces/LocalWorkspace.h"

#include "sdk/base/Clock.h"
#include "sdk/base/PrivateFiles.h"
#include "sdk/store/UserFolders.h"
#include "sdk/workspaces/LocalWorkspaceUser.h"

#include "service/VLRWorkspaceUser.h"

#include <QDesktopServices>
#include <QUrl>

LocalWorkspace::LocalWorkspace(const WorkspaceStore::Workspace& snapshot)
{
    setIdentifier(snapshot.id);
    setName(snapshot.name);
    setUpdatedAt(Clock::toDateTime(snapshot.updatedAt));
    setWorkspaceUsers(membersOf(snapshot));
}

VLRWorkspaceUserList LocalWorkspace::membersOf(const WorkspaceStore::Workspace& snapshot)
{
    VLRWorkspaceUserList users;
    for (const WorkspaceStore::Member& member : snapshot.members) {
        auto user = std::make_shared<LocalWorkspaceUser>();
        user->setFirstName(member.firstName);
        user->setLastName(member.lastName);
        user->setRole(member.role);
        user->setAvatar(member.avatar);
        users.append(user);
    }
    return users;
}

bool LocalWorkspace::sameMembers(const VLRWorkspaceUserList& a, const VLRWorkspaceUserList& b)
{
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i)
        if (a[i]->firstName() != b[i]->firstName() || a[i]->lastName() != b[i]->lastName()
            || a[i]->role() != b[i]->role() || a[i]->avatar() != b[i]->avatar())
            return false;
    return true;
}

bool LocalWorkspace::update(const WorkspaceStore::Workspace& snapshot)
{
    bool changed = false;
    if (name() != snapshot.name) {
        setName(snapshot.name);
        changed = true;
    }
    const QDateTime updated = Clock::toDateTime(snapshot.updatedAt);
    if (updatedAt() != updated) {
        setUpdatedAt(updated);
        changed = true;
    }
    const VLRWorkspaceUserList members = membersOf(snapshot);
    if (!sameMembers(members, workspaceUsers())) {
        setWorkspaceUsers(members);
        changed = true;
    }
    return changed;
}

void LocalWorkspace::openInBrowser(bool)
{
    const QString folder = UserFolders::workspaceFolder(name(), identifier());
    if (PrivateFiles::makeFolder(folder))
        QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}
