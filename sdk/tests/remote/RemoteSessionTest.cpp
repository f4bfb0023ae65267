// Sessions of a team server through the library as the program makes it:
// real server processes on loopback over TLS, sharing a real PostgreSQL.
#include "ChildProcess.h"
#include "TestCluster.h"
#include "support/TestPictures.h"

#include "sdk/accounts/Base32.h"
#include "sdk/accounts/Totp.h"
#include "sdk/remote/RemoteWorkspaceUser.h"
#include "sdk/remote/VeluriaServiceLibrary.h"
#include "sdk/transfers/QueuedTransfer.h"

#include "service/VLREnvironment.h"
#include "service/VLRLoginVerifier.h"
#include "service/VLRPublication.h"
#include "service/VLRReachabilityManager.h"
#include "service/VLRTransferReporting.h"
#include "service/VLRUser.h"
#include "service/VLRUserSessionDelegate.h"
#include "service/VLRUtils.h"
#include "service/VLRVersionChecker.h"
#include "service/VLRWorkspace.h"
#include "service/VLRWorkspaceUser.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSettings>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString server = QStringLiteral("127.0.0.1");

VeluriaServiceLibrary& library()
{
    static VeluriaServiceLibrary veluria;
    return veluria;
}

// The library's settings of this process name a server, trusted or not.
void configure(const QString& configFolder, quint16 port, const QString& certificate)
{
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, configFolder);
    QSettings settings(configFolder + QStringLiteral("/Veluria/VeluriaService.ini"), QSettings::IniFormat);
    settings.clear();
    settings.setValue(QStringLiteral("server/address"), QStringLiteral("https://%1:%2").arg(server).arg(port));
    if (!certificate.isEmpty())
        settings.setValue(QStringLiteral("server/trustedCertificate"), certificate);
}

struct Outcome
{
    VLRUserSessionPtr session;
    VLRLoginVerifierPtr verifier;
    vlr::OptionalError error;
};

Outcome signIn(const QString& email, const QString& password)
{
    Outcome outcome;
    bool answered = false;
    library().createUserSessionWithLoginCredentials(
        VLRLoginCredentials(email, password), QStringLiteral("lumenra-courier-token"), true,
        [&](const VLRUserSessionPtr& session, const VLRLoginVerifierPtr& verifier, const vlr::OptionalError& error) {
            outcome = {session, verifier, error};
            answered = true;
        });
    EXPECT_TRUE(TestCluster::waitFor([&] { return answered; }, 20000));
    return outcome;
}

struct Delegate : VLRUserSessionDelegate
{
    void passwordChanged() override { ++passwordChanges; }
    void downstreamProxyUnavailable() override { ++lost; }
    void currentVersionIsUnsupported() override { }
    void clientKeyExpired() override { ++expired; }
    void getFolderURLFromUser(const QString&, const QUrl&, const VLRFolderValidationHandler&,
                              const VLRFolderCompletionHandler& completion) override
    {
        completion(QUrl());
    }
    void workspace(const VLRWorkspacePtr& workspace, const VLRPublicationList& publications) override
    {
        for (const VLRPublicationPtr& publication : publications)
            heard.append(workspace->name() + QLatin1Char('|') + publication->userEmail() + QLatin1Char('|')
                         + publication->text());
    }

    int lost = 0;
    int expired = 0;
    int passwordChanges = 0;
    QStringList heard;
};

const QueuedTransfer* finishedTransferOf(const VLRUserSessionPtr& session, const QString& filePath)
{
    for (const VLRTransferReportingPtr& transfer : session->completedTransfers())
        if (const auto* queued = static_cast<const QueuedTransfer*>(transfer.get()); queued->job().filePath == filePath)
            return queued;
    return nullptr;
}

} // namespace

class RemoteSessionTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        cluster = new TestCluster;
        folder = new QTemporaryDir;
        if (!cluster->missing().isEmpty())
            return;
        first = cluster->startServer();
        second = cluster->startServer();
        cluster->addUser(QStringLiteral("ann@example.com"), QStringLiteral("ann secret"));
        cluster->addUser(QStringLiteral("bob@example.com"), QStringLiteral("bob secret"));
        totpSecret = cluster->addUser(QStringLiteral("cem@example.com"), QStringLiteral("cem secret"), true);
        certificate = folder->filePath(QStringLiteral("trusted.pem"));
        QFile pem(certificate);
        pem.open(QIODevice::WriteOnly);
        pem.write(cluster->tls().caCertificates().value(0).toPem());
        pem.close();
        const QByteArray ann = cluster->signIn(first, QStringLiteral("ann@example.com"), QStringLiteral("ann secret"));
        posters = cluster->call(first, "POST", QStringLiteral("/v1/workspaces"), ann, R"({"name": "Posters"})")
                      .json.value(QStringLiteral("id"))
                      .toString();
        cluster->call(first, "POST", QStringLiteral("/v1/workspaces/%1/members").arg(posters), ann,
                      R"({"email": "bob@example.com"})");
        bobToken = cluster->signIn(second, QStringLiteral("bob@example.com"), QStringLiteral("bob secret"));
    }
    static void TearDownTestSuite()
    {
        library().init().shutdown();
        delete cluster;
        delete folder;
    }

    void SetUp() override
    {
        if (!cluster->missing().isEmpty())
            GTEST_SKIP() << qPrintable(cluster->missing());
        configure(folder->filePath(QStringLiteral("config")), first, certificate);
        library().utils().setDatabaseLocation(QUrl::fromLocalFile(folder->path()));
        library().environment().setEnvironmentWithDomainName(server);
    }

    static bool publishAsBob(const QString& text)
    {
        return cluster
                   ->call(second, "POST", QStringLiteral("/v1/workspaces/%1/publications").arg(posters), bobToken,
                          QJsonDocument(QJsonObject{{QStringLiteral("text"), text}}).toJson())
                   .status
            == 201;
    }

    static qint64 sessionsOfBob()
    {
        QSqlQuery query(QSqlDatabase::database(QStringLiteral("test")));
        query.exec(QStringLiteral("SELECT count(*) FROM sessions s JOIN users u ON u.id = s.user_id "
                                  "WHERE u.email = 'bob@example.com'"));
        return query.next() ? query.value(0).toLongLong() : -1;
    }

    static inline TestCluster* cluster = nullptr;
    static inline QTemporaryDir* folder = nullptr;
    static inline quint16 first = 0;
    static inline quint16 second = 0;
    static inline QString totpSecret;
    static inline QString certificate;
    static inline QString posters;
    static inline QByteArray bobToken;
};

TEST_F(RemoteSessionTest, TheSelectorOffersTheServerAndASignInThereIsRefusedClearly)
{
    EXPECT_EQ(library().environment().domainNames(), (QStringList{"localhost", server}));
    EXPECT_EQ(library().environment().environment(), 1);
    EXPECT_EQ(library().environment().appHostname(), QStringLiteral("%1:%2").arg(server).arg(first));
    EXPECT_EQ(library().utils().resetPasswordURL(),
              QUrl(QStringLiteral("https://%1:%2/users/password/new").arg(server).arg(first)));

    const Outcome wrong = signIn(QStringLiteral("ann@example.com"), QStringLiteral("not it"));
    ASSERT_TRUE(wrong.error);
    EXPECT_EQ(wrong.error->code, vlr::WrongCredentialsError);
    EXPECT_FALSE(wrong.session || wrong.verifier);

    // The second factor: a wrong code, then the right one.
    const Outcome pending = signIn(QStringLiteral("cem@example.com"), QStringLiteral("cem secret"));
    ASSERT_TRUE(pending.verifier);
    EXPECT_FALSE(pending.session || pending.error);
    auto verify = [&](const QString& code) {
        std::pair<VLRUserSessionPtr, vlr::OptionalError> result;
        bool answered = false;
        pending.verifier->verifyLoginWithCode(code, true, [&](const VLRUserSessionPtr& s, const vlr::OptionalError& e) {
            result = {s, e};
            answered = true;
        });
        EXPECT_TRUE(TestCluster::waitFor([&] { return answered; }, 20000));
        return result;
    };
    const QByteArray secret = Base32::decode(totpSecret);
    const qint64 step = Totp::stepAt(QDateTime::currentSecsSinceEpoch());
    const QString right = Totp::code(secret, step);
    const auto refused = verify(right == QLatin1String("000000") ? QStringLiteral("111111") : QStringLiteral("000000"));
    ASSERT_TRUE(refused.second);
    EXPECT_EQ(refused.second->code, 3);
    const auto accepted = verify(right);
    ASSERT_TRUE(accepted.first) << qPrintable(accepted.second ? accepted.second->localizedDescription : QString());
    EXPECT_EQ(accepted.first->user()->email(), "cem@example.com");
    accepted.first->logoutWithCompletionHandler({});

    // The server publishes no version manifest: the running version is the current one.
    const auto checker = library().createVersionChecker();
    std::optional<vlr::OptionalError> checked;
    checker->checkVersion([&](bool, bool outOfDate, const vlr::OptionalError& error) {
        EXPECT_FALSE(outOfDate);
        checked = error;
    });
    ASSERT_TRUE(TestCluster::waitFor([&] { return checked.has_value(); }));
    EXPECT_FALSE(*checked);

    // A certificate nobody trusted: refused, and the text names the key that trusts one.
    configure(folder->filePath(QStringLiteral("config")), first, QString());
    const Outcome untrusted = signIn(QStringLiteral("ann@example.com"), QStringLiteral("ann secret"));
    ASSERT_TRUE(untrusted.error);
    EXPECT_FALSE(untrusted.session);
    EXPECT_TRUE(untrusted.error->localizedDescription.contains("trustedCertificate="))
        << qPrintable(untrusted.error->localizedDescription);

    // A domain no setting names keeps the old refusal.
    library().environment().setEnvironmentWithDomainName(QStringLiteral("elsewhere.example"));
    const Outcome elsewhere = signIn(QStringLiteral("ann@example.com"), QStringLiteral("ann secret"));
    ASSERT_TRUE(elsewhere.error);
    EXPECT_TRUE(elsewhere.error->localizedDescription.contains("elsewhere.example"));
}

// Ann's client talks to the first server process; Bob's, a process of its own
// with its own home and settings, to the second.
TEST_F(RemoteSessionTest, APublicationOfAnotherMachineArrivesThroughTheOtherServer)
{
    const Outcome ann = signIn(QStringLiteral("ann@example.com"), QStringLiteral("ann secret"));
    ASSERT_TRUE(ann.session) << qPrintable(ann.error ? ann.error->localizedDescription : QString());
    Delegate delegate;
    ann.session->setDelegate(&delegate);
    EXPECT_TRUE(ann.session->hasWorkspaces());
    ASSERT_TRUE(TestCluster::waitFor([&] { return !ann.session->syncingLists(); }));
    const VLRWorkspacePtr shared = ann.session->workspaceFromID(posters);
    ASSERT_TRUE(shared);
    ASSERT_EQ(shared->workspaceUsers().size(), 2);
    EXPECT_EQ(shared->workspaceUsers().at(0)->role(), 1);

    // A workspace of her own goes to the head; Bob's publication brings Posters back there.
    VLRWorkspacePtr made;
    ann.session->createNewWorkspaceWithName(
        QStringLiteral("Flyers"),
        [&](const VLRWorkspacePtr& workspace, const vlr::OptionalError&) { made = workspace; });
    ASSERT_TRUE(TestCluster::waitFor([&] { return made != nullptr; }));
    EXPECT_EQ(ann.session->workspaces().value(0), made);

    QTemporaryDir bobHome;
    const QString bobConfig = bobHome.filePath(QStringLiteral("config"));
    configure(bobConfig, second, certificate);
    configure(folder->filePath(QStringLiteral("config")), first, certificate);
    QProcessEnvironment extra;
    extra.insert(QStringLiteral("VELURIA_CHILD_CONFIG"), bobConfig);
    extra.insert(QStringLiteral("VELURIA_CHILD_WORKSPACE"), posters);
    extra.insert(QStringLiteral("VELURIA_CHILD_TEXT"), QStringLiteral("From the other desk"));
    const qint64 bobSessions = sessionsOfBob();
    ChildProcess bob(QStringLiteral("RemotePublisher"), bobHome.filePath(QStringLiteral("data")), bobHome.path(),
                     extra);
    ASSERT_TRUE(bob.waitForSuccess(60000)) << qPrintable(bob.output());
    // Bob's client quit right after signing out: the server heard of it.
    EXPECT_EQ(sessionsOfBob(), bobSessions);
    ASSERT_TRUE(TestCluster::waitFor([&] { return !delegate.heard.isEmpty(); }, 5000));
    EXPECT_EQ(delegate.heard, QStringList{"Posters|bob@example.com|From the other desk"});
    EXPECT_EQ(ann.session->workspaces().value(0), shared);
    EXPECT_EQ(delegate.lost + delegate.expired, 0);
    ann.session->logoutWithCompletionHandler({});
}

TEST_F(RemoteSessionTest, AFileGoesUpOnTheUploadQueueAndComesBackThroughItsLink)
{
    const Outcome ann = signIn(QStringLiteral("ann@example.com"), QStringLiteral("ann secret"));
    ASSERT_TRUE(ann.session);
    Delegate delegate;
    ann.session->setDelegate(&delegate);
    ASSERT_TRUE(TestCluster::waitFor([&] { return !ann.session->syncingLists(); }));
    const QByteArray content = QByteArray("poster ").repeated(20000);
    const QString source = folder->filePath(QStringLiteral("poster.pdf"));
    QFile file(source);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();

    vlr::OptionalError refusal;
    ann.session->uploadAndPublishNewRevision(QUrl::fromLocalFile(source), posters, true, QStringLiteral("Draft"),
                                             &refusal);
    ASSERT_FALSE(refusal);
    ASSERT_TRUE(TestCluster::waitFor([&] { return ann.session->completedTransfers().size() == 1; }, 20000));
    const auto upload = std::static_pointer_cast<QueuedTransfer>(ann.session->completedTransfers().first());
    ASSERT_FALSE(upload->error()) << qPrintable(upload->error()->localizedDescription);
    ASSERT_TRUE(TestCluster::waitFor([&] { return delegate.heard.contains("Posters|ann@example.com|Draft"); }));

    QTemporaryDir target;
    const auto downloadThroughItsLink = [&](const QueuedTransfer* upload) {
        VLRTransferReportingPtr download;
        vlr::OptionalError failure;
        ann.session->downloadUrl(
            QStringLiteral("veluria://download?workspace=%1&revision=%2").arg(posters, upload->job().revisionId),
            QUrl::fromLocalFile(target.path()),
            [&](const VLRTransferReportingPtr& transfer, const vlr::OptionalError& e) {
                download = transfer;
                failure = e;
            });
        EXPECT_TRUE(TestCluster::waitFor([&] { return download || failure; }));
        EXPECT_TRUE(download && TestCluster::waitFor([&] { return download->isFinished(); }, 20000));
        EXPECT_TRUE(download && !download->error());
    };
    downloadThroughItsLink(upload.get());
    QFile copy(target.filePath(QStringLiteral("poster.pdf")));
    ASSERT_TRUE(copy.open(QIODevice::ReadOnly));
    EXPECT_EQ(copy.readAll(), content);

    // A folder, handed over as the file drop hands it (".../Drafts/"), goes
    // up and comes back whole.
    const QString drafts = folder->filePath(QStringLiteral("Drafts"));
    ASSERT_TRUE(QDir().mkpath(drafts + QStringLiteral("/final")));
    ASSERT_TRUE(QFile::copy(source, drafts + QStringLiteral("/final/poster.pdf")));
    ann.session->uploadAndPublishNewRevision(QUrl::fromLocalFile(drafts + QLatin1Char('/')), posters, true,
                                             QStringLiteral("All drafts"), &refusal);
    ASSERT_FALSE(refusal) << qPrintable(refusal->localizedDescription);
    ASSERT_TRUE(TestCluster::waitFor([&] { return finishedTransferOf(ann.session, drafts); }, 20000));
    ASSERT_FALSE(finishedTransferOf(ann.session, drafts)->error());
    downloadThroughItsLink(finishedTransferOf(ann.session, drafts));
    QFile inFolder(target.filePath(QStringLiteral("Drafts/final/poster.pdf")));
    ASSERT_TRUE(inFolder.open(QIODevice::ReadOnly));
    EXPECT_EQ(inFolder.readAll(), content);
    ann.session->logoutWithCompletionHandler({});
}

TEST_F(RemoteSessionTest, AServerThatGoesAwayIsUnreachableAndWhatWasMissedComesOnceAfterwards)
{
    const Outcome ann = signIn(QStringLiteral("ann@example.com"), QStringLiteral("ann secret"));
    ASSERT_TRUE(ann.session);
    Delegate delegate;
    ann.session->setDelegate(&delegate);
    ASSERT_TRUE(TestCluster::waitFor([&] { return !ann.session->syncingLists(); }));
    ASSERT_TRUE(publishAsBob(QStringLiteral("one")));
    ASSERT_TRUE(TestCluster::waitFor([&] { return delegate.heard.size() == 1; }));

    cluster->killServer(first);
    ASSERT_TRUE(TestCluster::waitFor([&] {
        return library().reachabilityManager().currentNetworkStatus() == VLRReachabilityManager::NotReachable;
    }));
    ASSERT_TRUE(publishAsBob(QStringLiteral("two")));
    ASSERT_TRUE(publishAsBob(QStringLiteral("three")));
    cluster->startServer({}, first);
    ASSERT_TRUE(TestCluster::waitFor([&] { return delegate.heard.size() >= 3; }, 20000));
    EXPECT_NE(library().reachabilityManager().currentNetworkStatus(), VLRReachabilityManager::NotReachable);

    // A later session of the same user starts where this one stopped.
    ann.session->logoutWithCompletionHandler({});
    ASSERT_TRUE(publishAsBob(QStringLiteral("four")));
    const Outcome again = signIn(QStringLiteral("ann@example.com"), QStringLiteral("ann secret"));
    ASSERT_TRUE(again.session);
    again.session->setDelegate(&delegate);
    ASSERT_TRUE(TestCluster::waitFor([&] { return delegate.heard.size() >= 4; }));
    // Anything told twice would have come by now.
    TestCluster::waitFor([] { return false; }, 1500);
    EXPECT_EQ(delegate.heard,
              (QStringList{"Posters|bob@example.com|one", "Posters|bob@example.com|two",
                           "Posters|bob@example.com|three", "Posters|bob@example.com|four"}));
    again.session->logoutWithCompletionHandler({});
}

TEST_F(RemoteSessionTest, AnExpiredTokenOneEndedElsewhereAndAChangedPasswordEndTheSessionThroughTheDelegate)
{
    auto signedIn = [](Delegate* delegate) {
        const Outcome outcome = signIn(QStringLiteral("ann@example.com"), QStringLiteral("ann secret"));
        EXPECT_TRUE(outcome.session);
        if (outcome.session) {
            outcome.session->setDelegate(delegate);
            EXPECT_TRUE(TestCluster::waitFor([&] { return !outcome.session->syncingLists(); }));
        }
        return outcome.session;
    };
    Delegate first, second;
    const VLRUserSessionPtr expiring = signedIn(&first);
    ASSERT_TRUE(expiring);
    ASSERT_TRUE(cluster->sql(QStringLiteral("UPDATE sessions SET expires_at = now() - interval '1 minute'")));
    vlr::OptionalError refusal;
    bool answered = false;
    expiring->publishText(QStringLiteral("late"), posters, [&](const QString&, const vlr::OptionalError& e) {
        refusal = e;
        answered = true;
    });
    ASSERT_TRUE(TestCluster::waitFor([&] { return answered; }));
    ASSERT_TRUE(refusal);
    EXPECT_EQ(first.expired, 1);
    EXPECT_EQ(first.lost, 0);

    const VLRUserSessionPtr ending = signedIn(&second);
    ASSERT_TRUE(ending);
    ASSERT_TRUE(cluster->sql(QStringLiteral("DELETE FROM sessions")));
    VLRWorkspacePtr none;
    answered = false;
    ending->createNewWorkspaceWithName(QStringLiteral("Late"),
                                       [&](const VLRWorkspacePtr& w, const vlr::OptionalError&) {
                                           none = w;
                                           answered = true;
                                       });
    ASSERT_TRUE(TestCluster::waitFor([&] { return answered; }));
    EXPECT_FALSE(none);
    EXPECT_EQ(second.lost, 1);
    EXPECT_EQ(second.expired, 0);

    // A password changed elsewhere is said on the stream, once.
    Delegate third;
    const VLRUserSessionPtr changed = signedIn(&third);
    ASSERT_TRUE(changed);
    ASSERT_TRUE(cluster->sql(QStringLiteral(
        "WITH u AS (SELECT id FROM users WHERE email = 'ann@example.com'), e AS (INSERT INTO events(user_id, kind, "
        "data) SELECT id, 'password', json_build_object('userID', id)::jsonb FROM u RETURNING id) "
        "SELECT pg_notify('veluria_events', id::text) FROM e")));
    ASSERT_TRUE(TestCluster::waitFor([&] { return third.passwordChanges == 1; }));
    EXPECT_EQ(third.lost + third.expired, 0);
    Delegate fourth;
    const VLRUserSessionPtr next = signedIn(&fourth);
    TestCluster::waitFor([] { return false; }, 1000);
    EXPECT_EQ(fourth.passwordChanges, 0);

    // The client signs out after any of them; that always succeeds.
    bool loggedOut = false;
    expiring->logoutWithCompletionHandler([&](const vlr::OptionalError& e) { loggedOut = !e; });
    EXPECT_TRUE(TestCluster::waitFor([&] { return loggedOut; }));
}

TEST_F(RemoteSessionTest, PicturesAndAPasswordSetByAnAdministratorReachTheSignedInClient)
{
    cluster->addUser(QStringLiteral("dee@example.com"), QStringLiteral("dee secret"));
    ASSERT_TRUE(cluster->sql(QStringLiteral("UPDATE users SET administrator = true WHERE email = 'dee@example.com'")));
    const QByteArray admin = cluster->signIn(first, QStringLiteral("dee@example.com"), QStringLiteral("dee secret"));
    const auto command = [&](const QString& name, const QJsonObject& body) {
        return cluster->call(first, "POST", QStringLiteral("/v1/admin/") + name, admin, QJsonDocument(body).toJson())
            .status;
    };
    const auto setPicture = [&](const QString& email, const QColor& colour) {
        const QString sha256 = cluster->call(first, "POST", QStringLiteral("/v1/admin/blobs"), admin, pngOf(colour))
                                   .json[QStringLiteral("sha256")]
                                   .toString();
        return command(QStringLiteral("avatar"),
                       {{QStringLiteral("arguments"), QJsonArray{email, QStringLiteral("picture.png")}},
                        {QStringLiteral("files"), QJsonObject{{QStringLiteral("1"), sha256}}}});
    };
    // Bob shares a workspace with Dee and has a picture before she signs in.
    const QString portraits =
        cluster->call(first, "POST", QStringLiteral("/v1/workspaces"), admin, R"({"name": "Portraits"})")
            .json.value(QStringLiteral("id"))
            .toString();
    cluster->call(first, "POST", QStringLiteral("/v1/workspaces/%1/members").arg(portraits), admin,
                  R"({"email": "bob@example.com"})");
    ASSERT_EQ(setPicture(QStringLiteral("bob@example.com"), Qt::green), 200);

    const Outcome outcome = signIn(QStringLiteral("dee@example.com"), QStringLiteral("dee secret"));
    ASSERT_TRUE(outcome.session);
    Delegate delegate;
    outcome.session->setDelegate(&delegate);
    ASSERT_TRUE(TestCluster::waitFor([&] { return !outcome.session->syncingLists(); }));
    EXPECT_TRUE(outcome.session->user()->avatar().isNull());
    // The owner comes first, then Bob.
    const auto bobsPicture = [&] {
        const VLRWorkspacePtr workspace = outcome.session->workspaceFromID(portraits);
        const VLRWorkspaceUserPtr bob = workspace ? workspace->workspaceUsers().value(1) : nullptr;
        return bob && !bob->avatar().isNull() ? bob->avatar().pixelColor(0, 0) : QColor();
    };
    EXPECT_TRUE(TestCluster::waitFor([&] { return bobsPicture() == QColor(Qt::green); }));

    ASSERT_EQ(setPicture(QStringLiteral("dee@example.com"), Qt::red), 200);
    EXPECT_TRUE(TestCluster::waitFor([&] { return !outcome.session->user()->avatar().isNull(); }));
    // A changed picture replaces the one shown.
    ASSERT_EQ(setPicture(QStringLiteral("bob@example.com"), Qt::blue), 200);
    EXPECT_TRUE(TestCluster::waitFor([&] { return bobsPicture() == QColor(Qt::blue); }));

    // Joining and leaving show without a reload: a workspace she is added to
    // appears, and goes when its owner removes her; Bob leaving hers leaves
    // her alone in its list of members. What was said there before she
    // joined is not news to her.
    bobToken = cluster->signIn(second, QStringLiteral("bob@example.com"), QStringLiteral("bob secret"));
    ASSERT_TRUE(publishAsBob(QStringLiteral("before Dee")));
    ASSERT_EQ(command(QStringLiteral("add-member"),
                      {{QStringLiteral("arguments"),
                        QJsonArray{QStringLiteral("Posters"), QStringLiteral("dee@example.com")}}}),
              200);
    EXPECT_TRUE(TestCluster::waitFor([&] { return outcome.session->workspaceFromID(posters) != nullptr; }));
    ASSERT_TRUE(publishAsBob(QStringLiteral("after Dee")));
    EXPECT_TRUE(TestCluster::waitFor([&] { return delegate.heard.contains("Posters|bob@example.com|after Dee"); }));
    EXPECT_FALSE(delegate.heard.contains("Posters|bob@example.com|before Dee"));
    const QByteArray ann = cluster->signIn(second, QStringLiteral("ann@example.com"), QStringLiteral("ann secret"));
    const QString membersOf = QStringLiteral("/v1/workspaces/%1/members/");
    ASSERT_EQ(cluster->call(second, "DELETE", membersOf.arg(posters) + outcome.session->userID(), ann).status, 204);
    EXPECT_TRUE(TestCluster::waitFor([&] { return outcome.session->workspaceFromID(posters) == nullptr; }));
    const QString bobId = static_cast<const RemoteWorkspaceUser*>(
                              outcome.session->workspaceFromID(portraits)->workspaceUsers().value(1).get())
                              ->userId();
    ASSERT_EQ(cluster->call(second, "DELETE", membersOf.arg(portraits) + bobId, admin).status, 204);
    EXPECT_TRUE(TestCluster::waitFor(
        [&] { return outcome.session->workspaceFromID(portraits)->workspaceUsers().size() == 1; }));

    ASSERT_EQ(command(QStringLiteral("passwd"),
                      {{QStringLiteral("arguments"),
                        QJsonArray{QStringLiteral("dee@example.com"), QStringLiteral("new secret")}}}),
              200);
    EXPECT_TRUE(TestCluster::waitFor([&] { return delegate.passwordChanges == 1; }));
    EXPECT_EQ(delegate.lost, 0);
}

// Ann's upload waits, paused, when she signs out; her next session sends it.
// She downloads it; Bob's newer revision of the file then replaces her copy.
TEST_F(RemoteSessionTest, AnUploadLeftAtSignOutGoesOnNextTimeAndANewerRevisionReplacesTheDownload)
{
    const QString source = folder->filePath(QStringLiteral("flyer.txt"));
    QFile file(source);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("first flyer");
    file.close();
    const Outcome before = signIn(QStringLiteral("ann@example.com"), QStringLiteral("ann secret"));
    ASSERT_TRUE(before.session);
    before.session->pauseAllTransfers(true);
    vlr::OptionalError refusal;
    before.session->uploadAndPublishNewRevision(QUrl::fromLocalFile(source), posters, true, QStringLiteral("Flyer"),
                                                &refusal);
    ASSERT_FALSE(refusal);
    before.session->logoutWithCompletionHandler({});

    const Outcome ann = signIn(QStringLiteral("ann@example.com"), QStringLiteral("ann secret"));
    ASSERT_TRUE(ann.session);
    ASSERT_TRUE(TestCluster::waitFor([&] { return finishedTransferOf(ann.session, source); }, 20000));
    const TransferJob upload = finishedTransferOf(ann.session, source)->job();
    ASSERT_FALSE(upload.error) << qPrintable(upload.error->localizedDescription);

    QTemporaryDir target;
    const QString copy = target.filePath(QStringLiteral("flyer.txt"));
    vlr::OptionalError failure;
    ann.session->downloadUrl(
        QStringLiteral("veluria://download?workspace=%1&revision=%2").arg(posters, upload.revisionId),
        QUrl::fromLocalFile(target.path()),
        [&](const VLRTransferReportingPtr&, const vlr::OptionalError& e) { failure = e; });
    ASSERT_TRUE(TestCluster::waitFor([&] { return finishedTransferOf(ann.session, copy); }, 20000));
    ASSERT_FALSE(failure);

    const QByteArray newer("second flyer, from Bob");
    const QByteArray bob = cluster->signIn(second, QStringLiteral("bob@example.com"), QStringLiteral("bob secret"));
    const TestCluster::Reply started = cluster->call(
        second, "POST", QStringLiteral("/v1/uploads"), bob,
        QJsonDocument(
            QJsonObject{{QStringLiteral("workspace"), posters},
                        {QStringLiteral("fileName"), QStringLiteral("flyer.txt")},
                        {QStringLiteral("size"), newer.size()},
                        {QStringLiteral("sha256"),
                         QString::fromLatin1(QCryptographicHash::hash(newer, QCryptographicHash::Sha256).toHex())},
                        {QStringLiteral("text"), QStringLiteral("Better")}})
            .toJson());
    ASSERT_EQ(started.status, 201);
    ASSERT_EQ(cluster
                  ->call(second, "PATCH",
                         QStringLiteral("/v1/uploads/") + started.json[QStringLiteral("id")].toString(), bob, newer,
                         {{"Upload-Offset", "0"}})
                  .status,
              201);
    ASSERT_TRUE(TestCluster::waitFor(
        [&] {
            QFile replaced(copy);
            return replaced.open(QIODevice::ReadOnly) && replaced.readAll() == newer;
        },
        20000));
    EXPECT_FALSE(QFile::exists(target.filePath(QStringLiteral("flyer 2.txt"))));
    EXPECT_TRUE(TestCluster::waitFor([&] {
        const auto* automatic = static_cast<const QueuedTransfer*>(ann.session->completedTransfers().last().get());
        return automatic->job().subType == VLRTransferReporting::AutoRevisionSubType
            && automatic->job().filePath == copy;
    }));
    ann.session->logoutWithCompletionHandler({});
}

// Bob's client in a process of its own: signs in to the server its settings
// name and publishes a text.
TEST(ChildRole, RemotePublisher)
{
    if (!ChildProcess::isChild("RemotePublisher"))
        GTEST_SKIP() << "another member's client on another machine";
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, qEnvironmentVariable("VELURIA_CHILD_CONFIG"));
    QDir().mkpath(qEnvironmentVariable("VELURIA_CHILD_DATABASE"));
    library().utils().setDatabaseLocation(QUrl::fromLocalFile(qEnvironmentVariable("VELURIA_CHILD_DATABASE")));
    library().environment().setEnvironmentWithDomainName(server);
    const Outcome bob = signIn(QStringLiteral("bob@example.com"), QStringLiteral("bob secret"));
    ASSERT_TRUE(bob.session) << qPrintable(bob.error ? bob.error->localizedDescription : QString());
    ASSERT_TRUE(TestCluster::waitFor([&] { return !bob.session->syncingLists(); }));
    bool answered = false;
    vlr::OptionalError error;
    bob.session->publishText(qEnvironmentVariable("VELURIA_CHILD_TEXT"),
                             qEnvironmentVariable("VELURIA_CHILD_WORKSPACE"),
                             [&](const QString&, const vlr::OptionalError& e) {
                                 error = e;
                                 answered = true;
                             });
    ASSERT_TRUE(TestCluster::waitFor([&] { return answered; }));
    EXPECT_FALSE(error);
    bob.session->logoutWithCompletionHandler({});
    library().init().shutdown();
}
