#include "app/ByteCountFormatter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

TEST(ByteCountFormatter, SizesMatchEveryWorkedValue)
{
    const std::vector<std::pair<int64_t, const char*>> table = {
        {-5, "0 B"},
        {0, "0 B"},
        {1, "1 B"},
        {999, "999 B"},
        {1000, "1000 B"},
        {1001, "1 KB"},
        {1024, "1 KB"},
        {1499, "1 KB"},
        {1500, "2 KB"},
        {2500, "2 KB"},
        {999999, "1000 KB"},
        {1000000, "1000 KB"},
        {1000001, "1 MB"},
        {1099000, "1 MB"},
        {1100000, "1.1 MB"},
        {1234567, "1.2 MB"},
        {1999999, "2.0 MB"},
        {999999999, "1000.0 MB"},
        {1000000000, "1000 MB"},
        {1000000001, "1 GB"},
        {1004000000, "1 GB"},
        {1024000000, "1.02 GB"},
        {1050000000, "1.05 GB"},
        {1200000000, "1.2 GB"},
        {1250000000, "1.25 GB"},
        {1500000000, "1.5 GB"},
        {1560000000, "1.56 GB"},
        {1999000000, "2.0 GB"},
        {999999999999, "1000.0 GB"},
        {1000000000000, "1000 GB"},
        {1000000000001, "1 TB"},
        {1024000000000, "1.02 TB"},
        {2500000000000, "2.5 TB"},
        {1000000000000000, "1000 TB"},
        {1024000000000000, "1024 TB"},
        {1024000000000001, "1024000000000001 B"},
        {INT64_MIN, "0 B"},
    };
    for (const auto& [bytes, text] : table)
        EXPECT_EQ(ByteCountFormatter::sizeFormatWithInt(bytes), QString::fromLatin1(text)) << bytes;
}

TEST(ByteCountFormatter, SpeedsDropDecimalsFromAMegabitAndKeepTheOverflow)
{
    const std::vector<std::pair<double, const char*>> table = {
        {0, "---"},
        {-3, "---"},
        {512, "512 kbps"},
        {0.5, "0.5 kbps"},
        {999.25, "999.25 kbps"},
        {1000, "1 Mbps"},
        {1999, "1 Mbps"},
        {999999.9, "999 Mbps"},
        {1000000, "1 Gbps"},
        {2147483647, "2147 Gbps"},
        {2147483648.0, "-2147 Gbps"},
        {1e300, "-2147 Gbps"},
    };
    for (const auto& [speed, text] : table)
        EXPECT_EQ(ByteCountFormatter::speedText(speed), QString::fromLatin1(text)) << speed;
}

TEST(ByteCountFormatter, TimesLeftAndTheLineThatJoinsThem)
{
    const std::vector<std::pair<uint64_t, const char*>> table = {
        {0, "---"},
        {1, "Less than a minute"},
        {59, "Less than a minute"},
        {60, "1 Minute"},
        {119, "1 Minute"},
        {120, "2 Minutes"},
        {3599, "59 Minutes"},
        {3600, "1 Hour"},
        {7199, "1 Hour"},
        {7200, "2 Hours"},
        {90000, "25 Hours"},
        // Only the low 32 bits count, read as a signed number.
        {(uint64_t(1) << 32) + 7200, "2 Hours"},
        {uint64_t(0xFFFFFFFF), "0 Hours"},
    };
    for (const auto& [seconds, text] : table)
        EXPECT_EQ(ByteCountFormatter::timeLeftText(seconds), QString::fromLatin1(text)) << seconds;

    EXPECT_EQ(ByteCountFormatter::speedTimeLeftText(0, 0), QStringLiteral("--- | ---"));
    EXPECT_EQ(ByteCountFormatter::speedTimeLeftText(1500, 45), QStringLiteral("1 Mbps | Less than a minute"));
}
