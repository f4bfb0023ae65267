#include "app/ByteCountFormatter.h"

#include "app/VLRText.h"

#include <QLocale>

#include <array>
#include <climits>
#include <cmath>
#include <cstdio>

namespace {

const std::array<const char*, 5> kUnits = {"TB", "GB", "MB", "KB", "B"};
const QString kUnknown = QStringLiteral("---");

// printf's conversion rounds the exact binary value, halves to even, which
// is the rounding these texts are defined with.
QString printed(const char* format, double x, const char* unit)
{
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), format, x, unit);
    return QString::fromLatin1(buffer.data());
}

// A double truncated to a signed 32-bit number the way the processor does
// it: anything out of range becomes the smallest value.
int32_t truncatedToInt32(double value)
{
    if (!(value > double(INT32_MIN) - 1.0 && value < double(INT32_MAX) + 1.0))
        return INT32_MIN;
    return static_cast<int32_t>(value);
}

QString withCount(const char* english, int32_t count)
{
    return vlr::localized(english).replace(QLatin1String("%i"), QString::number(count));
}

} // namespace

QString ByteCountFormatter::sizeFormatWithInt(int64_t bytes)
{
    const auto count = static_cast<double>(bytes);
    std::size_t position = kUnits.size() - 1;
    double x = count;
    for (std::size_t i = 0; i < kUnits.size(); ++i) {
        const double scaled = count / std::pow(1000.0, double(kUnits.size() - 1 - i));
        if (scaled > 1.0 && scaled <= 1024.0) {
            position = i;
            x = scaled;
            break;
        }
    }
    const char* unit = kUnits[position];
    if (x < 1.0)
        return QStringLiteral("0 ") + QLatin1String(unit);
    const double frac = x - std::floor(x);
    if (position <= 1 && frac > 0.0099) {
        double y = frac * 10.0;
        y -= std::floor(y);
        return printed(y >= 0.95 || y <= 0.05 ? "%.1f %s" : "%.2f %s", x, unit);
    }
    if (position <= 2 && frac > 0.099)
        return printed("%.1f %s", x, unit);
    return printed("%.f %s", x, unit);
}

QString ByteCountFormatter::speedText(double kilobitsPerSecond)
{
    const double s = kilobitsPerSecond;
    if (s > 0 && s < 1000)
        return QString::number(s, 'g', QLocale::FloatingPointShortest) + QStringLiteral(" kbps");
    if (s >= 1000 && s < 1000000)
        return QStringLiteral("%1 Mbps").arg(truncatedToInt32(s) / 1000);
    if (s >= 1000000)
        return QStringLiteral("%1 Gbps").arg(truncatedToInt32(s) / 1000000);
    return kUnknown;
}

QString ByteCountFormatter::timeLeftText(uint64_t secondsLeft)
{
    // The counts are taken from the low 32 bits as a signed number.
    const auto t = static_cast<int32_t>(static_cast<uint32_t>(secondsLeft));
    if (secondsLeft == 0)
        return kUnknown;
    if (secondsLeft < 60)
        return vlr::localized("Less than a minute");
    if (secondsLeft < 120)
        return vlr::localized("1 Minute");
    if (secondsLeft < 3600)
        return withCount("%i Minutes", t / 60);
    if (secondsLeft < 7200)
        return vlr::localized("1 Hour");
    return withCount("%i Hours", t / 3600);
}

QString ByteCountFormatter::speedTimeLeftText(double kilobitsPerSecond, uint64_t secondsLeft)
{
    return vlr::format(QStringLiteral("%@ | %@"), speedText(kilobitsPerSecond), timeLeftText(secondsLeft));
}
