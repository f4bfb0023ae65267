// What a second client does in the tests that need two processes. Each role
// runs only when a parent test started this program for it.
#include "ChildProcess.h"
#include "ServiceFixture.h"

#include "service/VLRTransferQueue.h"
#include "service/VLRTransferReporting.h"
#include "service/VLRUtils.h"

#include <QTimer>

#include <csignal>
#include <cstdio>

namespace {

VLRUserSessionPtr signInAsChild(const QString& email)
{
    VLRUserSessionPtr session;
    vlr::OptionalError error;
    bool answered = false;
    library().createUserSessionWithLoginCredentials(
        VLRLoginCredentials(email, QStringLiteral("pw")), QStringLiteral("lumenra-courier-token"), true,
        [&](const VLRUserSessionPtr& s, const VLRLoginVerifierPtr&, const vlr::OptionalError& e) {
            session = s;
            error = e;
            answered = true;
        });
    EXPECT_TRUE(ServiceFixture::waitUntil([&] { return answered; }));
    EXPECT_FALSE(error.has_value()) << (error ? error->localizedDescription.toStdString() : "");
    return session;
}

void say(const char* line)
{
    std::printf("%s\n", line);
    std::fflush(stdout);
}

TEST(ChildRole, SlowUploader)
{
    if (!ChildProcess::isChild("SlowUploader"))
        GTEST_SKIP() << "a client killed in the middle of an upload";
    library().utils().setDatabaseLocation(QUrl::fromLocalFile(qEnvironmentVariable("VELURIA_CHILD_DATABASE")));
    const VLRUserSessionPtr session = signInAsChild(QStringLiteral("ann@example.com"));
    ASSERT_NE(session, nullptr);
    ASSERT_TRUE(ServiceFixture::waitUntil([&] { return !session->syncingLists(); }));
    vlr::OptionalError error;
    session->uploadAndPublishNewRevision(QUrl::fromLocalFile(qEnvironmentVariable("VELURIA_CHILD_FILE")),
                                         qEnvironmentVariable("VELURIA_CHILD_WORKSPACE"), false,
                                         QStringLiteral("big one"), &error);
    ASSERT_FALSE(error.has_value());
    const VLRTransferReportingPtr transfer = session->uploader()->transfers().value(0);
    ASSERT_NE(transfer, nullptr);
    ASSERT_TRUE(ServiceFixture::waitUntil([&] { return transfer->fractionCompleted() > 0.05; }));
    say("copying");
    // The parent ends this process from here on.
    ServiceFixture::waitUntil([] { return false; }, 60000);
}

TEST(ChildRole, Uploader)
{
    if (!ChildProcess::isChild("Uploader"))
        GTEST_SKIP() << "a client killed at a moment its parent chooses";
    library().utils().setDatabaseLocation(QUrl::fromLocalFile(qEnvironmentVariable("VELURIA_CHILD_DATABASE")));
    const VLRUserSessionPtr session = signInAsChild(QStringLiteral("ann@example.com"));
    ASSERT_NE(session, nullptr);
    ASSERT_TRUE(ServiceFixture::waitUntil([&] { return !session->syncingLists(); }));
    vlr::OptionalError error;
    session->uploadAndPublishNewRevision(QUrl::fromLocalFile(qEnvironmentVariable("VELURIA_CHILD_FILE")),
                                         qEnvironmentVariable("VELURIA_CHILD_WORKSPACE"), false, QString(), &error);
    ASSERT_FALSE(error.has_value());
    ServiceFixture::waitUntil([] { return false; }, 60000);
}

TEST(ChildRole, Publisher)
{
    if (!ChildProcess::isChild("Publisher"))
        GTEST_SKIP() << "another member's client publishing a comment";
    library().utils().setDatabaseLocation(QUrl::fromLocalFile(qEnvironmentVariable("VELURIA_CHILD_DATABASE")));
    const VLRUserSessionPtr session = signInAsChild(QStringLiteral("bob@example.com"));
    ASSERT_NE(session, nullptr);
    ASSERT_TRUE(ServiceFixture::waitUntil([&] { return !session->syncingLists(); }));
    bool published = false;
    vlr::OptionalError error;
    session->publishText(QStringLiteral("From afar"), qEnvironmentVariable("VELURIA_CHILD_WORKSPACE"),
                         [&](const QString&, const vlr::OptionalError& e) {
                             error = e;
                             published = true;
                         });
    ASSERT_TRUE(ServiceFixture::waitUntil([&] { return published; }));
    ASSERT_FALSE(error.has_value()) << error->localizedDescription.toStdString();
    say("published");
    session->logoutWithCompletionHandler(nullptr);
    library().init().shutdown();
}

TEST(ChildRole, LateLocation)
{
    if (!ChildProcess::isChild("LateLocation"))
        GTEST_SKIP() << "a client whose database location comes after its sign-in started";
    QTimer::singleShot(400, [] {
        library().utils().setDatabaseLocation(QUrl::fromLocalFile(qEnvironmentVariable("VELURIA_CHILD_DATABASE")));
    });
    const VLRUserSessionPtr session = signInAsChild(QStringLiteral("ann@example.com"));
    ASSERT_NE(session, nullptr);
    session->logoutWithCompletionHandler(nullptr);
    library().init().shutdown();
}

TEST(ChildRole, Crasher)
{
    if (!ChildProcess::isChild("Crasher"))
        GTEST_SKIP() << "a client that crashes after the library started its crash reporting";
    library().init().initUsingCrashlytics(true);
    std::raise(SIGSEGV);
}

} // namespace
