#include "sdk/accounts/Base32.h"
#include "sdk/accounts/Totp.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

const QByteArray rfcSecret("12345678901234567890");

// RFC 6238, appendix B: the SHA-1 column, eight digits.
TEST(SecondFactorCode, MatchesTheRfc6238Sha1TestVectors)
{
    const QList<QPair<qint64, QString>> vectors{
        {59, QStringLiteral("94287082")},         {1111111109, QStringLiteral("07081804")},
        {1111111111, QStringLiteral("14050471")}, {1234567890, QStringLiteral("89005924")},
        {2000000000, QStringLiteral("69279037")}, {20000000000, QStringLiteral("65353130")}};
    for (const auto& [time, code] : vectors)
        EXPECT_EQ(Totp::code(rfcSecret, Totp::stepAt(time), 8), code) << time;
    // Authenticator apps show the last six digits of the same number.
    EXPECT_EQ(Totp::code(rfcSecret, Totp::stepAt(59)), QStringLiteral("287082"));
}

TEST(SecondFactorCode, AcceptsOneStepOfDriftEachWayAndEachCodeOnce)
{
    const qint64 now = 1700000015;
    const qint64 step = Totp::stepAt(now);
    // One step late or early is taken; two are refused.
    for (const qint64 drift : {-2, -1, 0, 1, 2})
        EXPECT_EQ(Totp::verify(rfcSecret, Totp::code(rfcSecret, step + drift), now, 0),
                  std::abs(drift) < 2 ? step + drift : -1);
    // A code of a step already used, or before it, is refused.
    EXPECT_EQ(Totp::verify(rfcSecret, Totp::code(rfcSecret, step), now, step), -1);
    EXPECT_EQ(Totp::verify(rfcSecret, Totp::code(rfcSecret, step - 1), now, step - 1), -1);
    // Typed with a blank in the middle, as apps show it.
    EXPECT_EQ(Totp::verify(rfcSecret, Totp::code(rfcSecret, step).insert(3, QLatin1Char(' ')), now, 0), step);
    EXPECT_EQ(Totp::verify(rfcSecret, QStringLiteral("12345"), now, 0), -1);
    EXPECT_EQ(Totp::verify(QByteArray(), Totp::code(rfcSecret, step), now, 0), -1);
}

// RFC 4648 vectors, without padding: what authenticator apps read.
TEST(SecondFactorCode, SecretsTravelAsBase32)
{
    EXPECT_EQ(Base32::encode("foobar"), QStringLiteral("MZXW6YTBOI"));
    EXPECT_EQ(Base32::decode(QStringLiteral("mzxw6ytboi")), QByteArray("foobar"));
    EXPECT_EQ(Base32::decode(QStringLiteral("MZXW6YQ=")), QByteArray("foob"));
    EXPECT_TRUE(Base32::decode(QStringLiteral("MZ1W")).isNull());
}

} // namespace
