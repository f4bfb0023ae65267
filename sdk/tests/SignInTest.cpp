#include "ServiceFixture.h"

#include "sdk/accounts/Totp.h"
#include "sdk/base/SqlStatement.h"

#include "service/VLREnvironment.h"
#include "service/VLRLoginVerifier.h"
#include "service/VLRUser.h"
#include "service/VLRUtils.h"

#include <QCoreApplication>
#include <QDateTime>

namespace {

using SignIn = ServiceFixture;

TEST_F(SignIn, WrongPasswordAndUnknownAddressAreTheSameRefusal)
{
    addUser(QStringLiteral("ann@example.com"), QStringLiteral("right horse"));
    const auto wrong = signIn(QStringLiteral("ann@example.com"), QStringLiteral("wrong horse"));
    const auto unknown = signIn(QStringLiteral("bob@example.com"), QStringLiteral("right horse"));
    for (const auto& outcome : {wrong, unknown}) {
        EXPECT_EQ(outcome.calls, 1);
        EXPECT_EQ(outcome.session, nullptr);
        EXPECT_EQ(outcome.verifier, nullptr);
        ASSERT_TRUE(outcome.error.has_value());
        EXPECT_EQ(outcome.error->code, 2);
        EXPECT_EQ(outcome.error->domain, QStringLiteral("VLRWebErrorDomain"));
        EXPECT_EQ(outcome.error->localizedDescription,
                  QStringLiteral("The e-mail address or the password is not correct."));
        EXPECT_TRUE(outcome.onGuiThread);
    }
}

TEST_F(SignIn, RefusesAnUnknownClientKeyAndAnotherService)
{
    addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    const auto badKey = signIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"), QStringLiteral("someone-else"));
    ASSERT_TRUE(badKey.error.has_value());
    EXPECT_EQ(badKey.error->code, 5);
    EXPECT_EQ(badKey.session, nullptr);

    library().environment().setEnvironmentWithDomainName(QStringLiteral("veluria.example.org"));
    const auto elsewhere = signIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    library().environment().setEnvironmentWithDomainName(QStringLiteral("LOCALHOST"));
    EXPECT_EQ(library().environment().environment(), 0);
    ASSERT_TRUE(elsewhere.error.has_value());
    EXPECT_EQ(elsewhere.error->localizedDescription,
              QStringLiteral("The Veluria service at \"veluria.example.org\" can't be reached from this version of "
                             "Veluria. Choose \"localhost\" to use the service on this computer."));
}

TEST_F(SignIn, RightPasswordGivesASessionOfTheAccount)
{
    const QString id = addUser(QStringLiteral("ann@example.com"), QStringLiteral("right horse"), QStringLiteral("Ann"));
    addWorkspace(QStringLiteral("Posters"), id);
    const auto outcome = signIn(QStringLiteral(" ANN@example.com "), QStringLiteral("right horse"));
    ASSERT_NE(outcome.session, nullptr);
    EXPECT_EQ(outcome.calls, 1);
    EXPECT_FALSE(outcome.error.has_value());
    EXPECT_EQ(outcome.verifier, nullptr);
    EXPECT_EQ(outcome.session->userID(), id);
    EXPECT_EQ(outcome.session->user()->email(), QStringLiteral("ann@example.com"));
    // Known before the lists arrive, which is when the client reads it.
    EXPECT_TRUE(outcome.hasWorkspacesAtAnswer);
    EXPECT_TRUE(outcome.syncingListsAtAnswer);

    // The password is kept as an Argon2id hash only.
    SqlStatement stored(database().handle(), "SELECT password_hash FROM users WHERE id = ?1");
    stored.bind(1, id);
    ASSERT_TRUE(stored.next());
    EXPECT_TRUE(stored.text(0).startsWith(QStringLiteral("$argon2id$")));
    EXPECT_FALSE(stored.text(0).contains(QStringLiteral("right horse")));

    // The database and its folder are the user's alone.
    EXPECT_EQ(modeOf(databaseFolder()), 0700u);
    EXPECT_EQ(modeOf(databaseFolder() + QStringLiteral("/Veluria.sqlite")), 0600u);
}

TEST_F(SignIn, SecondFactorRightWrongLateReusedAndGuessed)
{
    const QString id = addUser(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    const QByteArray secret = Totp::newSecret();
    ASSERT_TRUE(AccountStore(database()).setSecondFactor(id, secret));

    const auto first = signIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    EXPECT_EQ(first.session, nullptr);
    EXPECT_FALSE(first.error.has_value());
    ASSERT_NE(first.verifier, nullptr);

    auto verify = [&](const VLRLoginVerifierPtr& verifier, const QString& code) {
        auto result = std::make_shared<std::pair<VLRUserSessionPtr, vlr::OptionalError>>();
        auto calls = std::make_shared<int>(0);
        verifier->verifyLoginWithCode(
            code, true, [result, calls](const VLRUserSessionPtr& session, const vlr::OptionalError& error) {
                *result = {session, error};
                ++*calls;
            });
        EXPECT_TRUE(waitUntil([&] { return *calls > 0; }));
        QCoreApplication::processEvents();
        EXPECT_EQ(*calls, 1);
        return *result;
    };
    const qint64 step = Totp::stepAt(QDateTime::currentSecsSinceEpoch());
    const auto wrong = verify(first.verifier,
                              QStringLiteral("000000") == Totp::code(secret, step) ? QStringLiteral("111111")
                                                                                   : QStringLiteral("000000"));
    ASSERT_TRUE(wrong.second.has_value());
    EXPECT_EQ(wrong.second->code, 3);
    EXPECT_EQ(wrong.second->localizedDescription,
              QStringLiteral("The verification code is not correct or has expired."));
    const auto late = verify(first.verifier, Totp::code(secret, step - 3));
    ASSERT_TRUE(late.second.has_value());
    EXPECT_EQ(late.second->code, 3);

    const auto right = verify(first.verifier, Totp::code(secret, step));
    ASSERT_NE(right.first, nullptr);
    EXPECT_FALSE(right.second.has_value());
    EXPECT_EQ(right.first->userID(), id);
    right.first->logoutWithCompletionHandler(nullptr);

    // The verifier has done its work; and the same code, once more through
    // a new sign-in, is spent.
    EXPECT_EQ(verify(first.verifier, Totp::code(secret, step)).second->code, 4);
    const auto again = signIn(QStringLiteral("ann@example.com"), QStringLiteral("pw"));
    ASSERT_NE(again.verifier, nullptr);
    EXPECT_EQ(verify(again.verifier, Totp::code(secret, step)).second->code, 3);
    // Five wrong codes end a verifier.
    QList<qint64> codes;
    for (int attempt = 0; attempt < 5; ++attempt)
        codes.append(verify(again.verifier, QStringLiteral("abcdef")).second->code);
    EXPECT_EQ(codes, (QList<qint64>{3, 3, 3, 3, 4}));
}

} // namespace
