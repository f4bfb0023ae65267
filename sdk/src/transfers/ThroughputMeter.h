#pragma once

#include <QtGlobal>

#include <chrono>
#include <deque>

// Speed of a copy over the last two seconds, from samples of the bytes done.
class ThroughputMeter
{
public:
    using Clock = std::chrono::steady_clock;

    void sample(Clock::time_point when, qint64 bytesDone);
    // Bytes per second; 0 until two samples lie some time apart.
    double bytesPerSecond() const;

private:
    struct Sample
    {
        Clock::time_point when;
        qint64 bytes;
    };
    std::deque<Sample> m_samples;
};
