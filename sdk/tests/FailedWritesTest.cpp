#include "ServiceFixture.h"

#include "sdk/store/ContentStore.h"

#include <sqlite3.h>

namespace {

using FailedWrites = ServiceFixture;

// Every commit is refused, as a full disk refuses the last write of one: no
// write may report success, and none may leave anything behind.
TEST_F(FailedWrites, ARefusedCommitIsAFailureEverywhere)
{
    const QString ann = addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    const QString posters = addWorkspace(QStringLiteral("Posters"), ann);
    const QByteArray content = ContentStore(databaseFolder()).put("poster", nullptr);
    WorkspaceStore workspaces(database());
    AccountStore accounts(database());
    const qint64 lastSeq = workspaces.lastPublicationSeq();
    sqlite3_commit_hook(
        database().handle(), [](void*) { return 1; }, nullptr);

    EXPECT_EQ(workspaces.publishText(posters, ann, QStringLiteral("Looks good")), 0);
    EXPECT_TRUE(workspaces
                    .addRevision(posters, ann, QStringLiteral("poster.pdf"), QString::fromLatin1(content), false, 6,
                                 QStringLiteral("New"))
                    .isNull());
    EXPECT_TRUE(workspaces.create(QStringLiteral("Flyers"), ann, 1).isNull());
    EXPECT_FALSE(accounts.setPassword(ann, QStringLiteral("new")));

    sqlite3_commit_hook(database().handle(), nullptr, nullptr);
    EXPECT_EQ(workspaces.lastPublicationSeq(), lastSeq);
    EXPECT_EQ(workspaces.workspaceCountOf(ann), 1);
}

} // namespace
