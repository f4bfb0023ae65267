#include "ServiceFixture.h"
#include "support/TestPictures.h"

#include "sdk/base/Clock.h"
#include "sdk/transfers/UploadRun.h"

#include "service/VLRPublication.h"
#include "service/VLRUser.h"
#include "service/VLRWorkspace.h"
#include "service/VLRWorkspaceUser.h"

namespace {

class Workspaces : public ServiceFixture
{
protected:
    void SetUp() override
    {
        ServiceFixture::SetUp();
        ann = addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"), QStringLiteral("Ann"));
        bob = addUser(QStringLiteral("bob@example.com"), QStringLiteral("pw"), QStringLiteral("Bob"));
    }

    QString ann;
    QString bob;
};

TEST_F(Workspaces, LoadAfterSignInNewestFirstWithTheirMembers)
{
    const qint64 now = Clock::nowMs();
    addWorkspace(QStringLiteral("Old"), ann, now - 86400000);
    const QString fresh = addWorkspace(QStringLiteral("Fresh"), bob, now);
    addWorkspace(QStringLiteral("Middle"), ann, now - 3600000);
    addWorkspace(QStringLiteral("Not Ann's"), bob, now);
    WorkspaceStore(database()).addMember(fresh, ann, WorkspaceStore::MemberRole);

    const auto outcome = signIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    auto session = outcome.session;
    ASSERT_NE(session, nullptr);
    ChangeRecorder recorder;
    recorder.watch(*session,
                   {QStringLiteral("syncingLists"), QStringLiteral("workspaces"), QStringLiteral("projects")});
    // The sign-in's own wait may already have let a busy machine load the
    // lists; while loading, nothing is listed yet.
    const bool loading = session->syncingLists();
    if (loading) {
        EXPECT_TRUE(session->workspaces().isEmpty());
    }
    ASSERT_TRUE(waitUntil([&] { return !session->syncingLists(); }));

    QStringList names;
    for (const VLRWorkspacePtr& workspace : session->workspaces())
        names.append(workspace->name());
    EXPECT_EQ(names, (QStringList{QStringLiteral("Fresh"), QStringLiteral("Middle"), QStringLiteral("Old")}));
    EXPECT_EQ(session->workspaces().at(2)->updatedAt().toMSecsSinceEpoch(), now - 86400000);
    const VLRWorkspacePtr shared = session->workspaceFromID(fresh);
    ASSERT_EQ(shared, session->workspaces().at(0));
    ASSERT_EQ(shared->workspaceUsers().size(), 2);
    EXPECT_EQ(shared->workspaceUsers().at(0)->firstName(), QStringLiteral("Bob"));
    EXPECT_EQ(shared->workspaceUsers().at(0)->role(), 1);
    EXPECT_EQ(shared->workspaceUsers().at(1)->role(), 2);

    EXPECT_EQ(recorder.count(QStringLiteral("syncingLists")), loading ? 1 : 0);
    EXPECT_EQ(recorder.count(QStringLiteral("workspaces")), loading ? 1 : 0);
    EXPECT_TRUE(recorder.allOnGuiThread());
}

TEST_F(Workspaces, CreatedWorkspaceReachesTheListAndEmptyNamesAreRefused)
{
    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    EXPECT_FALSE(session->hasWorkspaces());
    ChangeRecorder recorder;
    recorder.watch(*session, {QStringLiteral("workspaces")});

    VLRWorkspacePtr created;
    vlr::OptionalError error;
    auto create = [&](const QString& name) {
        int calls = 0;
        session->createNewWorkspaceWithName(name, [&](const VLRWorkspacePtr& w, const vlr::OptionalError& e) {
            created = w;
            error = e;
            ++calls;
        });
        EXPECT_TRUE(waitUntil([&] { return calls > 0; }));
    };
    create(QStringLiteral("  Posters "));
    ASSERT_NE(created, nullptr);
    EXPECT_EQ(created->name(), QStringLiteral("Posters"));
    EXPECT_EQ(session->workspaces().value(0), created);
    EXPECT_TRUE(session->hasWorkspaces());
    EXPECT_EQ(recorder.count(QStringLiteral("workspaces")), 1);
    ASSERT_EQ(created->workspaceUsers().size(), 1);
    EXPECT_EQ(created->workspaceUsers().at(0)->role(), 1);
    EXPECT_TRUE(WorkspaceStore(database()).isMember(created->identifier(), ann));

    create(QStringLiteral("   "));
    EXPECT_EQ(created, nullptr);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->localizedDescription, QStringLiteral("\"   \" can't be used as a name."));
    EXPECT_TRUE(recorder.allOnGuiThread());
}

TEST_F(Workspaces, PublicationsOfOthersAreAnnouncedAndMoveTheirWorkspaceUp)
{
    const qint64 now = Clock::nowMs();
    const QString shared = addWorkspace(QStringLiteral("Shared"), bob, now - 86400000);
    addWorkspace(QStringLiteral("Mine"), ann, now - 3600000);
    WorkspaceStore(database()).addMember(shared, ann, WorkspaceStore::MemberRole);
    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    RecordingDelegate delegate;
    session->setDelegate(&delegate);
    ASSERT_EQ(session->workspaces().at(1)->identifier(), shared);
    ChangeRecorder recorder;
    recorder.watch(*session,
                   {QStringLiteral("workspaces"), QStringLiteral("projects"), QStringLiteral("syncingWorkspaces")});

    // Bob publishes a comment and a file, through a connection of his own.
    WorkspaceStore(database()).publishText(shared, bob, QStringLiteral("Have a look <b>now</b>"));
    const QString file = writeFile(home() + QStringLiteral("/poster.txt"), "A poster");
    TransferJob job;
    job.id = Clock::newIdentifier();
    job.userId = bob;
    job.filePath = file;
    job.workspaceId = shared;
    job.text = QStringLiteral("");
    ASSERT_EQ(UploadRun(
                  job, databaseFolder(), database(), [] { return false; }, [](qint64) {}, [](qint64) {})
                  .run()
                  .outcome,
              TransferResult::Outcome::Completed);

    // The two may come in one announcement or in two, as the watcher saw them.
    VLRPublicationList publications;
    ASSERT_TRUE(waitUntil(
        [&] {
            publications.clear();
            for (const auto& [workspace, announced] : delegate.announcements) {
                EXPECT_EQ(workspace, session->workspaceFromID(shared));
                publications += announced;
            }
            return publications.size() >= 2;
        },
        2500));
    ASSERT_EQ(publications.size(), 2);
    EXPECT_EQ(publications.at(0)->userID(), bob);
    EXPECT_EQ(publications.at(0)->userFirstName(), QStringLiteral("Bob"));
    EXPECT_EQ(publications.at(0)->text(), QStringLiteral("Have a look <b>now</b>"));
    EXPECT_EQ(publications.at(1)->projectName(), QStringLiteral("poster.txt"));
    EXPECT_EQ(session->workspaces().at(0)->identifier(), shared);
    EXPECT_EQ(session->projects().size(), 1);
    // Reading what changed counted as syncing, and is over.
    EXPECT_GE(recorder.count(QStringLiteral("syncingWorkspaces")), 2);
    EXPECT_EQ(recorder.count(QStringLiteral("syncingWorkspaces")) % 2, 0);
    EXPECT_FALSE(session->syncingWorkspaces());

    // Ann's own comment comes back to her too, with her identity, so that
    // the client can leave it out.
    QString published;
    session->publishText(QStringLiteral("Looks good"), shared, [&](const QString& id, const vlr::OptionalError& error) {
        EXPECT_FALSE(error.has_value());
        published = id;
    });
    const qsizetype before = delegate.announcements.size();
    ASSERT_TRUE(waitUntil([&] { return delegate.announcements.size() == before + 1; }, 2500));
    EXPECT_FALSE(published.isEmpty());
    EXPECT_EQ(delegate.announcements.last().second.at(0)->userID(), ann);
    EXPECT_TRUE(recorder.allOnGuiThread());
    session->setDelegate(nullptr);
}

TEST_F(Workspaces, PublishingIsRefusedOutsideTheUsersWorkspaces)
{
    const QString bobs = addWorkspace(QStringLiteral("Bob's"), bob);
    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    vlr::OptionalError error;
    session->publishText(QStringLiteral("hi"), bobs, [&](const QString& id, const vlr::OptionalError& e) {
        EXPECT_TRUE(id.isNull());
        error = e;
    });
    ASSERT_TRUE(waitUntil([&] { return error.has_value(); }));
    EXPECT_EQ(error->localizedDescription, QStringLiteral("The workspace could not be found."));
    vlr::OptionalError queued;
    session->uploadAndPublishNewRevision(QUrl::fromLocalFile(writeFile(home() + QStringLiteral("/a"), "a")), bobs,
                                         false, QStringLiteral(""), &queued);
    ASSERT_TRUE(queued.has_value());
    EXPECT_TRUE(session->uploader()->transfers().isEmpty());
}

TEST_F(Workspaces, AccountChangesElsewhereReachTheSession)
{
    QString failure;
    const QString carol = AccountStore(database())
                              .add(QStringLiteral("carol@example.com"), QStringLiteral("Carol"), QString(),
                                   QStringLiteral("pw"), true, &failure);
    const auto session = signedIn(QStringLiteral("carol@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    RecordingDelegate delegate;
    session->setDelegate(&delegate);
    EXPECT_TRUE(session->user()->needsConfirmation());
    vlr::OptionalError refused;
    session->createNewWorkspaceWithName(QStringLiteral("X"),
                                        [&](const VLRWorkspacePtr&, const vlr::OptionalError& e) { refused = e; });
    ASSERT_TRUE(waitUntil([&] { return refused.has_value(); }));
    EXPECT_EQ(refused->localizedDescription, QStringLiteral("Please confirm your e-mail address first."));

    ChangeRecorder recorder;
    recorder.watch(*session, {QStringLiteral("user")});
    AccountStore(database()).confirm(carol);
    ASSERT_TRUE(waitUntil([&] { return !session->user()->needsConfirmation(); }, 2500));
    EXPECT_EQ(recorder.count(QStringLiteral("user")), 1);

    AccountStore(database()).setPassword(carol, QStringLiteral("new"));
    ASSERT_TRUE(waitUntil([&] { return delegate.passwordChanges > 0; }, 2500));
    EXPECT_TRUE(session->hasEnded());
    vlr::OptionalError afterwards;
    session->publishText(QStringLiteral("hi"), QStringLiteral("x"),
                         [&](const QString&, const vlr::OptionalError& e) { afterwards = e; });
    ASSERT_TRUE(waitUntil([&] { return afterwards.has_value(); }));
    EXPECT_EQ(afterwards->code, 8);
    EXPECT_TRUE(recorder.allOnGuiThread());
    session->setDelegate(nullptr);
}

TEST_F(Workspaces, AMembersPictureSetElsewhereReachesTheWorkspacesMembers)
{
    const QString shared = addWorkspace(QStringLiteral("Posters"), bob, Clock::nowMs());
    WorkspaceStore(database()).addMember(shared, ann, WorkspaceStore::MemberRole);
    const auto session = signedIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(session, nullptr);
    ASSERT_TRUE(waitUntil([&] { return session->workspaceFromID(shared) != nullptr; }));
    const VLRWorkspacePtr workspace = session->workspaceFromID(shared);
    ASSERT_TRUE(workspace->workspaceUsers().at(0)->avatar().isNull());
    ChangeRecorder recorder;
    recorder.watch(*workspace, {QStringLiteral("workspaceUsers")});

    ASSERT_TRUE(AccountStore(database()).setAvatar(bob, pngOf(Qt::red)));
    ASSERT_TRUE(waitUntil(
        [&] { return workspace->workspaceUsers().at(0)->avatar().pixelColor(3, 3) == QColor(Qt::red); }, 2500));
    EXPECT_EQ(workspace->workspaceUsers().at(0)->firstName(), QStringLiteral("Bob"));
    EXPECT_EQ(recorder.count(QStringLiteral("workspaceUsers")), 1);
    EXPECT_TRUE(recorder.allOnGuiThread());
}

} // namespace
