#include "fakes/FakeClientServices.h"
#include "fakes/FakeUserSession.h"
#include "sdk/accounts/AccountStore.h"
#include "sdk/base/Database.h"
#include "sdk/local/EmbeddedServiceLibrary.h"
#include "service/VLRLogHandler.h"
#include "service/VLRUser.h"
#include "signin/LoginViewController.h"
#include "signin/LoginViewControllerDelegate.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

struct SessionCatcher : LoginViewControllerDelegate
{
    VLRUserSessionPtr session;
    void didLoginWithSession(const VLRUserSessionPtr& s, bool) override { session = s; }
    void loginWithVerifier(const VLRLoginVerifierPtr&) override { }
    void currentVersionIsUnsupported() override { }
};

// Signs in as a user would; answer, if any, plays the library's part.
VLRUserSessionPtr signIn(const ClientServices& services, const std::function<void()>& answer = {})
{
    SessionCatcher catcher;
    LoginViewController page(services);
    page.setDelegate(&catcher);
    page.view();
    page.emailField()->setText(QStringLiteral("ada@example.com"));
    page.passwordField()->setText(QStringLiteral("s3cret"));
    page.signIn();
    if (answer)
        answer();
    QElapsedTimer clock;
    clock.start();
    while (!catcher.session && clock.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    return catcher.session;
}

} // namespace

// The library is chosen at run time: one process holds the embedded local
// service and the test double, and the same page signs in through either.
TEST(ServiceLibraryChoiceTest, TheSamePageSignsInThroughWhicheverLibraryItIsHanded)
{
    vlr::setLogFilePath(QString());
    QTemporaryDir data;
    EmbeddedServiceLibrary embedded;
    embedded.utils().setDatabaseLocation(QUrl::fromLocalFile(data.path()));
    {
        auto database = Database::open(data.path(), nullptr);
        ASSERT_TRUE(database);
        AccountStore(*database).add(QStringLiteral("ada@example.com"), QStringLiteral("Ada"), QString(),
                                    QStringLiteral("s3cret"), false, nullptr);
    }
    FakeClientServices fakes(data.filePath(QStringLiteral("settings")));
    ClientServices services = fakes.services();

    services.library = &embedded;
    const VLRUserSessionPtr real = signIn(services);
    ASSERT_TRUE(real);
    EXPECT_EQ(real->user()->email(), "ada@example.com");
    EXPECT_TRUE(fakes.library.signIns.isEmpty());

    services.library = &fakes.library;
    const auto session = FakeUserSession::make();
    EXPECT_EQ(signIn(services, [&] { fakes.library.signInHandlers.complete(session, nullptr, std::nullopt); }),
              session);
    ASSERT_EQ(fakes.library.signIns.size(), 1);
    EXPECT_EQ(fakes.library.signIns.first().password, "s3cret");

    real->logoutWithCompletionHandler({});
    embedded.init().shutdown();
}
