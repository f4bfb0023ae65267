#pragma once

#include <QString>

#include <cstdint>

// The program's own short forms of sizes, speeds and times left. They are
// not the system's formatters: sizes step by 1000 but let each unit run up to
// 1024, and the decimals shown depend on the unit and on the fraction.
class ByteCountFormatter
{
public:
    // A byte count as "1.25 GB", "999 B", "0 B".
    static QString sizeFormatWithInt(int64_t bytes);
    // A speed in kilobits a second as "512 kbps", "1 Mbps"; "---" when unknown.
    static QString speedText(double kilobitsPerSecond);
    // A time left as "3 Minutes", "1 Hour"; "---" when unknown (zero).
    static QString timeLeftText(uint64_t secondsLeft);
    // The control panel's line: "<speed> | <time left>".
    static QString speedTimeLeftText(double kilobitsPerSecond, uint64_t secondsLeft);
};
