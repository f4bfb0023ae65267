#include "accounts/Base32.h"
#include "accounts/Totp.h"

#include <gtest/gtest.h>

namespace {

const QByteArray rfcSecret("12345678901234567890");

// RFC 6238, appendix B: the SHA-1 column, eight digits.
TEST(SecondFactorCode, MatchesTheRfc6238Sha1TestVectors)
{
    const QList<QPair<qint64, QString>> vectors{{59, QStringLiteral("94287082")},
                                                {1111111109, QStringLiteral("07081804")},
                                                {1111111111, QStringLiteral("14050471")},
                                                {1234567890, QStringLiteral("89005924")},
                                                {2000000000, QStringLiteral("69279037")},
                                                {20000000000, QStringLiteral("65353130")}};
    for (const auto& [time, code] : vectors)
        EXPECT_EQ(Totp::code(rfcSecret, Totp::stepAt(time), 8), code) << time;
    // Authenticator apps show the last six digits of the same number.
    EXPECT_EQ(Totp::code(rfcSecret, Totp::stepAt(59)), QStringLiteral("287082"));
}

TEST(SecondFactorCode, AcceptsOneStepOfDriftEachWayAndEachCodeOnce)
{
    const qint64 now = 1700000015;
    const qint64 step = Totp::stepAt(now);
    EXPECT_EQ(Totp::verify(rfcSecret, Totp::code(rfcSecret, step), now, 0), step);
    EXPECT_EQ(Totp::verify(rfcSecret, Totp::code(rfcSecret, step - 1), now, 0), step - 1);
    EXPECT_EQ(Totp::verify(rfcSecret, Totp::code(rfcSecret, step + 1), now, 0), step + 1);
    // Late by two steps, or early by two: refused.
    EXPECT_EQ(Totp::verify(rfcSecret, Totp::code(rfcSecret, step - 2), now, 0), -1);
    EXPECT_EQ(Totp::verify(rfcSecret, Totp::code(rfcSecret, step + 2), now, 0), -1);
    // A code of a step already used, or before it, is refused.
    EXPECT_EQ(Totp::verify(rfcSecret, Totp::code(rfcSecret, step), now, step), -1);
    EXPECT_EQ(Totp::verify(rfcSecret, Totp::code(rfcSecret, step - 1), now, step - 1), -1);
    // Typed with a blank in the middle, as apps show it.
    QString spaced = Totp::code(rfcSecret, step);
    spaced.insert(3, QLatin1Char(' '));
    EXPECT_EQ(Totp::verify(rfcSecret, spaced, now, 0), step);
    EXPECT_EQ(Totp::verify(rfcSecret, QStringLiteral("12345"), now, 0), -1);
    EXPECT_EQ(Totp::verify(QByteArray(), Totp::code(rfcSecret, step), now, 0), -1);
}

TEST(SecondFactorCode, SecretsTravelAsBase32InAnOtpauthUri)
{
    // RFC 4648 test vectors, without padding.
    EXPECT_EQ(Base32::encode("f"), QStringLiteral("MY"));
    EXPECT_EQ(Base32::encode("foobar"), QStringLiteral("MZXW6YTBOI"));
    EXPECT_EQ(Base32::decode(QStringLiteral("mzxw6ytboi")), QByteArray("foobar"));
    EXPECT_EQ(Base32::decode(QStringLiteral("MZXW6YQ=")), QByteArray("foob"));
    EXPECT_TRUE(Base32::decode(QStringLiteral("MZ1W")).isNull());

    const QByteArray secret = Totp::newSecret();
    EXPECT_EQ(secret.size(), 20);
    EXPECT_NE(secret, Totp::newSecret());
    EXPECT_EQ(Base32::decode(Base32::encode(secret)), secret);
    EXPECT_EQ(Totp::provisioningURI(rfcSecret, QStringLiteral("ann@example.com")),
              QStringLiteral("otpauth://totp/Veluria:ann@example.com?secret=GEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQ"
                             "&issuer=Veluria&algorithm=SHA1&digits=6&period=30"));
}

} // namespace
