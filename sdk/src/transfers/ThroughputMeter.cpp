#include "sdk/transfers/ThroughputMeter.h"

namespace {
constexpr auto window = std::chrono::seconds(2);
}

void ThroughputMeter::sample(Clock::time_point when, qint64 bytesDone)
{
    m_samples.push_back(Sample{when, bytesDone});
    while (m_samples.size() > 2 && when - m_samples.front().when > window)
        m_samples.pop_front();
}

double ThroughputMeter::bytesPerSecond() const
{
    if (m_samples.size() < 2)
        return 0;
    const double seconds = std::chrono::duration<double>(m_samples.back().when - m_samples.front().when).count();
    if (seconds <= 0.01)
        return 0;
    return double(m_samples.back().bytes - m_samples.front().bytes) / seconds;
}
